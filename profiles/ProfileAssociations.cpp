#include "profiles/ProfileAssociations.h"

#include "provider/ReadBack.h"

PEGASUS_USING_PEGASUS;

namespace serverprofile {

CIMObjectPath profilePath(ServerProfileProvider& provider, Uint32 profile,
                          const String& nameSpace) {
    return provider.buildRegisteredProfileReference(
        "CIM_RegisteredProfile", provider.registeredProfiles()[profile], nameSpace);
}

CIMObjectPath subProfilePath(ServerProfileProvider& provider, Uint32 subProfile,
                             const String& nameSpace) {
    return provider.buildRegisteredProfileReference(
        "CIM_RegisteredSubProfile", provider.registeredSubProfiles()[subProfile], nameSpace);
}

CIMObjectPath softwareIdentityPath(ServerProfileProvider& provider, const String& nameSpace) {
    return provider.buildOrvexSIReference("ORVEX_SoftwareIdentity", OrvexSI(), nameSpace);
}

Association conforming(const String& nameSpace, const CIMObjectPath& profile,
                       const char* elementClass) {
    return Association(elementConformsToProfile, nameSpace)
        .from(profile)
        .secondIs(CIMName(elementClass));
}

Association implementedBy(ServerProfileProvider& provider, const String& nameSpace) {
    return Association(elementSoftwareIdentity, nameSpace)
        .from(softwareIdentityPath(provider, nameSpace));
}

Conformance readConformance(ServerProfileProvider& provider, const ConformanceRow& row,
                            const String& nameSpace) {
    Conformance read;
    read.elementClass = row.elementClass;
    guarded(ReadBack(provider.cimomHandle(), nameSpace), read.elements, row.elementClass,
            {row.failure});
    read.profile = profilePath(provider, row.profile, nameSpace);
    return read;
}

} // namespace serverprofile
