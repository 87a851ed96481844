// Enumerating and getting registered profiles and subprofiles from the catalogue.
#include "common/ModuleState.h"
#include "common/ServedClasses.h"
#include "common/Trace.h"
#include "profiles/InstanceId.h"
#include "provider/ServerProfileProvider.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

/// Enumerated instances keep the path of the catalogue, whatever namespace the request names.
void deliverClones(const ServerProfileProvider::Instances& entries,
                   InstanceResponseHandler& handler) {
    for (Uint32 i = 0; i < entries.size(); ++i)
        handler.deliver(entries[i].clone());
}

} // namespace

void ServerProfileProvider::_getRegisteredProfileInstances(String, InstanceHandler& handler,
                                                           const String&) {
    deliverClones(_registeredProfiles, handler);
}

void ServerProfileProvider::_getRegisteredSubProfileInstances(String, InstanceHandler& handler,
                                                              const String&) {
    deliverClones(_registeredSubProfiles, handler);
}

void ServerProfileProvider::_getRegisteredProfileInstanceNames(String className,
                                                               PathHandler& handler,
                                                               const String& nameSpace) {
    const Instances& entries = _registeredProfiles;
    trace("Quil regProfInstNames() Start");
    for (Uint32 i = 0; i < entries.size(); ++i)
        handler.deliver(buildRegisteredProfileReference(className, entries[i], nameSpace));
    trace("Quil regProfInstNames() Exit");
}

// As above, but each entry is traced.
void ServerProfileProvider::_getRegisteredSubProfileInstanceNames(String className,
                                                                  PathHandler& handler,
                                                                  const String& nameSpace) {
    const Instances& entries = _registeredSubProfiles;
    trace("Quil regSubProfInstNames() Start");
    for (Uint32 i = 0; i < entries.size(); ++i) {
        trace("Quil regSubProfInstNames() i = ", i);
        handler.deliver(buildRegisteredProfileReference(className, entries[i], nameSpace));
    }
    trace("Quil regSubProfInstNames() Exit");
}

CIMInstance ServerProfileProvider::_getRegisteredProfileInstance(String keyValue,
                                                                 InstanceHandler& handler) {
    const Instances& entries = _registeredProfiles;
    bool found = false;
    CIMInstance result;
    trace("Quil getRegisteredProfileInstance(): Start keyValue is ", keyValue, " found flag is ",
          found);
    trace("Quil getRegisteredProfileInstance(): Start regprofiles size is ", entries.size());

    for (Uint32 i = 0; i < entries.size() && !found; ++i) {
        const Uint32 position = instanceIdPosition(
            entries[i],
            "Quil getRegisteredProfileInstance() - Exception - Property InstanceId not found");
        const String instanceId = instanceIdAt(
            entries[i], position,
            "Quil getRegisteredProfileInstance() - Exception - InstanceId value is Null");
        trace("Quil getRegisteredProfileInstance() - InstanceId is ", instanceId);
        if (String::equalNoCase(keyValue, instanceId)) {
            result = entries[i];
            found = true;
            trace("Quil getRegisteredProfileInstance() - Inst Found - foundFlag is ", found);
        }
    }
    if (!found)
        return result;

    // The key is delivered as the request spelt it, the property as the catalogue does.
    CIMInstance delivered = result.clone();
    trace("Quil _getRegProfInst(): onj path is ", delivered.getPath());
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("InstanceID"), keyValue, CIMKeyBinding::STRING));
    delivered.setPath(CIMObjectPath(_getHostName(), CIMNamespaceName("root/cimv2"),
                                    CIMName("CIM_RegisteredProfile"), keys));
    trace("Quil _getRegProfInst(): AFTER onj path is ", delivered.getPath());
    handler.deliver(delivered);
    return result;
}

// Unlike a profile, a subprofile keeps its catalogue path, and nothing is traced.
CIMInstance ServerProfileProvider::_getRegisteredSubProfileInstance(String keyValue,
                                                                    InstanceHandler& handler) {
    const Instances& profiles = _registeredProfiles;
    const Instances& entries = _registeredSubProfiles;
    for (Uint32 i = 0; i < entries.size(); ++i) {
        // The position comes from the profiles, the value from the subprofiles: on purpose.
        const Uint32 position = instanceIdPosition(profiles[i]);
        if (String::equalNoCase(keyValue, instanceIdAt(entries[i], position))) {
            handler.deliver(entries[i].clone());
            return entries[i];
        }
    }
    return CIMInstance();
}

namespace {
constexpr auto carriedProperties = {
    "InstanceID",        "RegisteredOrganization", "OtherRegisteredOrganization", "RegisteredName",
    "RegisteredVersion", "AdvertiseTypes",         "AdvertiseTypeDescriptions"};
} // namespace

constexpr ServedClass serverprofile::registeredProfileRow =
    ServedClass{"CIM_RegisteredProfile", "InstanceID", carriedProperties}
        .enumeratedBy<&ServerProfileProvider::_getRegisteredProfileInstanceNames,
                      &ServerProfileProvider::_getRegisteredProfileInstances>()
        .gotBy<&ServerProfileProvider::_getRegisteredProfileInstance>()
        .traversedBy<&ServerProfileProvider::_getRegisteredProfileAssociatorNames,
                     &ServerProfileProvider::_getRegisteredProfileAssociators,
                     &ServerProfileProvider::_getRegisteredProfileReferenceNames,
                     &ServerProfileProvider::_getRegisteredProfileReferences>();

constexpr ServedClass serverprofile::registeredSubProfileRow =
    ServedClass{"CIM_RegisteredSubProfile", "InstanceID", carriedProperties}
        .enumeratedBy<&ServerProfileProvider::_getRegisteredSubProfileInstanceNames,
                      &ServerProfileProvider::_getRegisteredSubProfileInstances>()
        .gotBy<&ServerProfileProvider::_getRegisteredSubProfileInstance>()
        .traversedBy<&ServerProfileProvider::_getRegisteredSubProfileAssociatorNames,
                     &ServerProfileProvider::_getRegisteredSubProfileAssociators,
                     &ServerProfileProvider::_getRegisteredSubProfileReferenceNames,
                     &ServerProfileProvider::_getRegisteredSubProfileReferences>();
