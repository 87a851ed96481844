#include "provider/OwnObjects.h"

#include "objectmanager/ManagerAssociations.h"
#include "profiles/ProfileAssociations.h"

#include <Pegasus/Common/CIMObject.h>

PEGASUS_USING_PEGASUS;

namespace serverprofile {

void deliverProfile(ObjectPathResponseHandler& handler, const Request& request, Uint32 profile) {
    handler.deliver(profilePath(request.provider, profile, request.nameSpace));
}

void deliverProfile(ObjectResponseHandler& handler, const Request& request, Uint32 profile) {
    handler.deliver(CIMObject(request.provider.registeredProfiles()[profile].clone()));
}

void deliverSubProfile(ObjectPathResponseHandler& handler, const Request& request,
                       Uint32 subProfile) {
    handler.deliver(subProfilePath(request.provider, subProfile, request.nameSpace));
}

void deliverSubProfile(ObjectResponseHandler& handler, const Request& request, Uint32 subProfile) {
    handler.deliver(CIMObject(request.provider.registeredSubProfiles()[subProfile].clone()));
}

void deliverSoftwareIdentity(ObjectPathResponseHandler& handler, const Request& request) {
    handler.deliver(softwareIdentityPath(request.provider, request.nameSpace));
}

void deliverSoftwareIdentity(ObjectResponseHandler& handler, const Request& request) {
    handler.deliver(
        CIMObject(request.provider.buildOrvexSIInstance("ORVEX_SoftwareIdentity", OrvexSI())));
}

void deliverHost(ObjectPathResponseHandler& handler, const Request& request) {
    handler.deliver(hostPath(request.provider, request.nameSpace));
}

void deliverHost(ObjectResponseHandler& handler, const Request& request) {
    handler.deliver(CIMObject(
        request.provider.buildOrvexOMHostInstance("ORVEX_ObjectManagerHost", OrvexOMHost())));
}

} // namespace serverprofile
