#include "common/OwnObjects.h"

#include <Pegasus/Common/CIMObject.h>

PEGASUS_USING_PEGASUS;

namespace serverprofile {

namespace {
constexpr const char* hostClass = "ORVEX_ObjectManagerHost";
constexpr const char* softwareIdentityClass = "ORVEX_SoftwareIdentity";
} // namespace

CIMObjectPath entryPath(const Request& request, const CatalogueHalf& half, Uint32 position) {
    return request.provider.buildRegisteredProfileReference(
        half.className, half.of(request)[position], request.nameSpace);
}

CIMObjectPath softwareIdentityPath(const Request& request) {
    return request.provider.buildOrvexSIReference(softwareIdentityClass, OrvexSI(),
                                                  request.nameSpace);
}

CIMObjectPath hostPath(const Request& request) {
    return request.provider.buildOrvexOMHostReference(hostClass, OrvexOMHost(), request.nameSpace);
}

void deliverEntry(ObjectPathResponseHandler& handler, const Request& request,
                  const CatalogueHalf& half, Uint32 position) {
    handler.deliver(entryPath(request, half, position));
}

void deliverEntry(ObjectResponseHandler& handler, const Request& request, const CatalogueHalf& half,
                  Uint32 position) {
    handler.deliver(CIMObject(half.of(request)[position].clone()));
}

void deliverSoftwareIdentity(ObjectPathResponseHandler& handler, const Request& request) {
    handler.deliver(softwareIdentityPath(request));
}

void deliverSoftwareIdentity(ObjectResponseHandler& handler, const Request& request) {
    handler.deliver(
        CIMObject(request.provider.buildOrvexSIInstance(softwareIdentityClass, OrvexSI())));
}

void deliverHost(ObjectPathResponseHandler& handler, const Request& request) {
    handler.deliver(hostPath(request));
}

void deliverHost(ObjectResponseHandler& handler, const Request& request) {
    handler.deliver(CIMObject(request.provider.buildOrvexOMHostInstance(hostClass, OrvexOMHost())));
}

Association conforming(const Request& request, Uint32 position, const char* elementClass) {
    return Association(elementConformsToProfile, request.nameSpace)
        .from(entryPath(request, profileEntries, position))
        .secondIs(CIMName(elementClass));
}

Association implementedBy(const Request& request, const CatalogueHalf& half) {
    return Association(elementSoftwareIdentity, request.nameSpace)
        .from(softwareIdentityPath(request))
        .secondIs(CIMName(half.className));
}

} // namespace serverprofile
