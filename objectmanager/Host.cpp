// The host of the object manager: one instance.
#include "common/ClassTemplates.h"
#include "common/ModuleState.h"
#include "common/ServedClasses.h"
#include "common/Trace.h"
#include "provider/ServerProfileProvider.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

constexpr auto carriedProperties = {"Name",        "NameFormat",        "Description",
                                    "ElementName", "OperationalStatus", "CreationClassName"};

constexpr const char* hostClass = "ORVEX_ObjectManagerHost";
constexpr Uint16 statusOk = 2; // ValueMap of OperationalStatus, CIM 2.41

CIMObjectPath hostPath(const String& className, const OrvexOMHost& host) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("CreationClassName"), host.getCreationClassName(),
                              CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("Name"), host.getName(), CIMKeyBinding::STRING));
    return CIMObjectPath(_getHostName(), CIMNamespaceName("root/cimv2"), CIMName(className), keys);
}

} // namespace

CIMInstance ServerProfileProvider::buildOrvexOMHostInstance(String className, OrvexOMHost host) {
    CIMInstance instance = _instAddQualifieres(_cimomHandle, CIMName(className));

    // Each getter of the record is asked whether there is a value; the value itself is set here.
    const struct {
        bool (OrvexOMHost::*gate)(CIMProperty&) const;
        const char* name;
        String value;
    } values[] = {
        {&OrvexOMHost::getName, "Name", host.getName()},
        {&OrvexOMHost::getCreationClassName, "CreationClassName", host.getCreationClassName()},
        {&OrvexOMHost::getNameFormat, "NameFormat", host.getNameFormat()},
        {&OrvexOMHost::getDescription, "Description", String()},
        {&OrvexOMHost::getElementName, "ElementName", String()},
    };
    CIMProperty unused;
    for (const auto& row : values)
        if ((host.*row.gate)(unused)) // Not tested: the record has all of its values, always
            setIfDefined(instance, row.name, CIMValue(row.value));

    trace("Quil - temp msg");
    if (host.getOperationalStatus(unused))
        setTypedArray(instance, "OperationalStatus", statusOk);

    instance.setPath(hostPath(className, host));
    return instance;
}

CIMObjectPath ServerProfileProvider::buildOrvexOMHostReference(String className, OrvexOMHost host,
                                                               String /*nameSpace*/) {
    return hostPath(className, host);
}

CIMInstance ServerProfileProvider::_getOrvexOMHostInstance(String key, InstanceHandler& handler) {
    CIMInstance result;
    trace("Quil getOrvexOHostInstance(): Start - key is ", key);
    if (String::equalNoCase(key, OrvexOMHost::getName())) {
        result = buildOrvexOMHostInstance(hostClass, OrvexOMHost());
        handler.deliver(result);
    }
    trace("Quil getOrvexOHostInstance(): Exit ");
    return result;
}

void ServerProfileProvider::_getOrvexOMHostInstances(String, InstanceHandler& handler,
                                                     const String&) {
    trace("Quil orvexOMHostInstances() Start");
    handler.deliver(buildOrvexOMHostInstance(hostClass, OrvexOMHost()));
    trace("Quil orvexOMHostInstances(): Exit");
}

void ServerProfileProvider::_getOrvexOHostInstanceNames(String className, PathHandler& handler,
                                                        const String& nameSpace) {
    trace("Quil orvexOMHostInstNames() Start");
    handler.deliver(buildOrvexOMHostReference(className, OrvexOMHost(), nameSpace));
    trace("Quil orvexOMHostInstNames(): Exit");
}

constexpr ServedClass serverprofile::objectManagerHostRow =
    ServedClass{hostClass, "Name", carriedProperties}
        .enumeratedBy<&ServerProfileProvider::_getOrvexOHostInstanceNames,
                      &ServerProfileProvider::_getOrvexOMHostInstances>()
        .gotBy<&ServerProfileProvider::_getOrvexOMHostInstance>()
        .traversedBy<&ServerProfileProvider::_getOrvexOMHostAssociatorNames,
                     &ServerProfileProvider::_getOrvexOMHostAssociators,
                     &ServerProfileProvider::_getOrvexOMHostReferenceNames,
                     &ServerProfileProvider::_getOrvexOMHostReferences>();
