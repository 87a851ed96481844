// The operations of the instance provider interface: one row of a table for each class.
#include "provider/RequestKeys.h"
#include "provider/Serve.h"

#include <Pegasus/Provider/ProviderException.h>

PEGASUS_USING_PEGASUS;
using serverprofile::trace;

namespace {

using Provider = ServerProfileProvider;
using GetByKey = CIMInstance (Provider::*)(String, InstanceResponseHandler&);
using GetByPath = CIMInstance (Provider::*)(const CIMObjectPath&, InstanceResponseHandler&);
using Names = void (Provider::*)(String, ObjectPathResponseHandler&, const String&);
using Instances = void (Provider::*)(String, InstanceResponseHandler&, const String&);
using Helper = void (Provider::*)(String, ResponseHandler&, const String&, bool instances);

/// Who enumerates a class: two members, or one that is told which of both is wanted, or nobody.
struct EnumerationRow {
    const char* className;
    Names names;
    Instances instances;
    Helper helper;
};

/// The classes that have no row here (the object manager, its mechanism and its namespaces) are
/// published by other providers of the server: for them the answer is empty.
constexpr EnumerationRow enumerations[] = {
    {"CIM_RegisteredProfile", &Provider::_getRegisteredProfileInstanceNames,
     &Provider::_getRegisteredProfileInstances, nullptr},
    {"CIM_RegisteredSubProfile", &Provider::_getRegisteredSubProfileInstanceNames,
     &Provider::_getRegisteredSubProfileInstances, nullptr},
    {"CIM_ReferencedProfile", nullptr, nullptr, nullptr},
    {"CIM_SubProfileRequiresProfile", &Provider::_getSubprofileRequiresProfileInstanceNames,
     &Provider::_getSubprofileRequiresProfileInstances, nullptr},
    {"CIM_ElementConformsToProfile", &Provider::_getElementConformstoProfileInstanceNames,
     &Provider::_getElementConformstoProfileInstances, nullptr},
    {"ORVEX_ObjectManagerHost", &Provider::_getOrvexOHostInstanceNames,
     &Provider::_getOrvexOMHostInstances, nullptr},
    {"ORVEX_SoftwareIdentity", &Provider::_getOrvexSIInstanceNames, &Provider::_getOrvexSIInstances,
     nullptr},
    {"CIM_HostedService", nullptr, nullptr, &Provider::_getOrvexSPHostedServiceHelper},
    {"CIM_HostedAccessPoint", nullptr, nullptr, &Provider::_getOrvexSPHostedAccessPointHelper},
    {"ORVEX_ElementSoftwareIdentity", nullptr, nullptr, &Provider::_getOrvexSPESIHelper},
    {"CIM_NamespaceInManager", nullptr, nullptr, &Provider::_getNSInMgrHelper},
    {"CIM_CommMechanismForManager", nullptr, nullptr, &Provider::_getCommMechForMgrHelper},
};

/// Who gets one object of a class: by the value of its key, or by its whole path, or nobody.
struct GetRow {
    const char* className;
    GetByKey byKey;
    GetByPath byPath;
};

constexpr GetRow gets[] = {
    {"CIM_RegisteredProfile", &Provider::_getRegisteredProfileInstance, nullptr},
    {"CIM_RegisteredSubProfile", &Provider::_getRegisteredSubProfileInstance, nullptr},
    {"CIM_ReferencedProfile", nullptr, nullptr},
    {"CIM_SubProfileRequiresProfile", nullptr, &Provider::_getSubprofileRequiresProfileInstance},
    {"CIM_ElementConformsToProfile", nullptr, &Provider::_getElementConformstoProfileInstance},
    {"ORVEX_ObjectManagerHost", &Provider::_getOrvexOMHostInstance, nullptr},
    {"ORVEX_SoftwareIdentity", &Provider::_getOrvexSIInstance, nullptr},
    {"CIM_HostedService", nullptr, &Provider::_getOrvexSPHostedServiceInstance},
    {"CIM_HostedAccessPoint", nullptr, &Provider::_getOrvexSPHostedAccessPointInstance},
    {"CIM_NamespaceInManager", nullptr, &Provider::_getNSInMgrInstance},
    {"CIM_CommMechanismForManager", nullptr, &Provider::_getCommMechForMgrInstance},
    {"ORVEX_ElementSoftwareIdentity", nullptr, &Provider::_getOrvexSPESIInstance},
};

} // namespace

template <class ItemHandler, class Row, class Member>
void ServerProfileProvider::enumerate(const char* name, const CIMObjectPath& classReference,
                                      ItemHandler& handler, Member Row::*member, bool instances) {
    serve(
        name, handler,
        [&] {
            CIMName className = classReference.getClassName();
            _checkClass(className);
            const Row* row = serverprofile::findRow(enumerations, serverprofile::plain(className));
            if (row == nullptr)
                return;
            const String nameSpace = classReference.getNameSpace().getString();
            if (row->*member != nullptr)
                (this->*(row->*member))(row->className, handler, nameSpace);
            else if (row->helper != nullptr)
                (this->*row->helper)(row->className, handler, nameSpace, instances);
        });
}

void ServerProfileProvider::enumerateInstanceNames(const OperationContext&,
                                                   const CIMObjectPath& classReference,
                                                   PathHandler& handler) {
    trace("Quil enumerateInstanceNames(): className is ", classReference.getClassName());
    enumerate("enumerateInstanceNames", classReference, handler, &EnumerationRow::names, false);
}

void ServerProfileProvider::enumerateInstances(const OperationContext&,
                                               const CIMObjectPath& classReference, const Boolean,
                                               const Boolean, const CIMPropertyList&,
                                               InstanceHandler& handler) {
    trace("Quil enumerateInstances(): Start ", classReference.getClassName());
    enumerate("enumerateInstances", classReference, handler, &EnumerationRow::instances, true);
}

void ServerProfileProvider::getInstance(const OperationContext&,
                                        const CIMObjectPath& instanceReference, const Boolean,
                                        const Boolean, const CIMPropertyList&,
                                        InstanceHandler& handler) {
    trace("Quil getInstance() Start: className ", instanceReference.getClassName());
    serve("getInstance", handler, [&] {
        CIMName className = instanceReference.getClassName();
        _checkClass(className);
        const CString plainName = serverprofile::plain(className);
        const auto key = serverprofile::findKey(*this, instanceReference, plainName);
        trace(className, " keyvalue ", key.value);
        serverprofile::requireKey(key);

        const GetRow* row = serverprofile::findRow(gets, plainName);
        if (row == nullptr)
            return;
        if (row->byKey != nullptr)
            (this->*row->byKey)(key.value, handler);
        else if (row->byPath != nullptr)
            (this->*row->byPath)(instanceReference, handler);
    });
}

void ServerProfileProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                           const CIMInstance&, PathHandler&) {
    throw CIMNotSupportedException(String());
}

void ServerProfileProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                           const CIMInstance&, const Boolean,
                                           const CIMPropertyList&, Handler&) {
    throw CIMNotSupportedException(String());
}

void ServerProfileProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                           Handler&) {
    throw CIMNotSupportedException(String());
}
