// The profile catalogue: the registered profiles and subprofiles that the switch advertises, built
// once as finished instances and only read from then on.
#include "common/ClassTemplates.h"
#include "common/ModuleState.h"
#include "common/Trace.h"
#include "profiles/InstanceId.h"
#include "provider/ServerProfileProvider.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

/// The entries in the order in which they are built. Others rely on their order in each array.
const struct {
    const char* instanceId;
    const char* registeredName;
    const char* className;
} entries[] = {
    {"Orvex1", "Fabric", "CIM_RegisteredProfile"},
    {"Orvex2", "Switch", "CIM_RegisteredProfile"},
    {"Orvex3", "Zone Control", "CIM_RegisteredSubProfile"},
    {"Orvex4", "Enhanced Zoning and Enhanced Zoning Control", "CIM_RegisteredSubProfile"},
    {"Orvex5", "Blades", "CIM_RegisteredSubProfile"},
    {"Orvex6", "Server", "CIM_RegisteredProfile"},
};

constexpr Uint16 organizationSnia = 11; // ValueMap of RegisteredOrganization, CIM 2.41
constexpr Uint16 advertisedBySlp = 3;   // ValueMap of AdvertiseTypes, CIM 2.41

Array<CIMKeyBinding> keyBindings(const CIMName& key, const String& instanceId) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(key, instanceId, CIMKeyBinding::STRING));
    return keys;
}

} // namespace

void ServerProfileProvider::initData() {
    dataBuildInProgress = 1;
    trace("Quil initData(): Start InitInProgress ", dataBuildInProgress);

    for (const auto& entry : entries) {
        const CIMInstance instance = buildRegisteredProfileInstance(
            entry.className, RegisteredProfile(entry.instanceId, entry.registeredName));
        (CIMName(entry.className) == "CIM_RegisteredProfile" ? _registeredProfiles
                                                             : _registeredSubProfiles)
            .append(instance);
    }

    // No object is kept: the host record stores the name and the flag for its class.
    OrvexOMHost(hostNameBuffer, lookupPending); // NOLINT(bugprone-unused-raii): see above

    initFlag = true;
    dataBuildInProgress = 0;
    trace("Quil initData(): Exit ");
}

CIMInstance ServerProfileProvider::buildRegisteredProfileInstance(String className,
                                                                  RegisteredProfile profile) {
    trace("Quil - buildRegisteredProfileInstance() STart - ", className);
    trace("Quil - buildRegisteredProfileInstance() - Regprof");

    CIMInstance instance = _instAddQualifieres(_cimomHandle, CIMName(className));
    Array<Uint16> advertiseTypes;
    advertiseTypes.append(advertisedBySlp);
    setIfDefined(instance, "InstanceID", CIMValue(profile.getInstanceId()));
    setIfDefined(instance, "RegisteredOrganization", CIMValue(organizationSnia));
    setIfDefined(instance, "OtherRegisteredOrganization", CIMValue(String()));
    setIfDefined(instance, "RegisteredName", CIMValue(profile.getRegisteredName()));
    setIfDefined(instance, "RegisteredVersion", CIMValue(String("1.1.0")));
    setIfDefined(instance, "AdvertiseTypes", CIMValue(advertiseTypes));

    instance.setPath(CIMObjectPath(_getHostName(), CIMNamespaceName("root/cimv2"),
                                   CIMName(className),
                                   keyBindings(CIMName("InstanceID"), profile.getInstanceId())));
    return instance;
}

CIMObjectPath ServerProfileProvider::buildRegisteredProfileReference(String className,
                                                                     CIMInstance instance,
                                                                     String nameSpace) {
    trace("Quil regProfRef() Start");
    const CIMName key("InstanceID");
    return CIMObjectPath(_getHostName(), CIMNamespaceName(nameSpace), CIMName(className),
                         keyBindings(key, instanceIdOf(instance, key)));
}

Uint32 ServerProfileProvider::findRegProfIndex(String instanceId, Instances profiles) {
    const Instances& entriesToSearch = profiles;
    const CIMName key("InstanceID");
    for (Uint32 i = 0; i < entriesToSearch.size(); ++i)
        if (String::equalNoCase(instanceId, instanceIdOf(entriesToSearch[i], key)))
            return i;
    return PEG_NOT_FOUND;
}
