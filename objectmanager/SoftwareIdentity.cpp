// The software identity of the switch's firmware: one instance.
#include "common/ClassTemplates.h"
#include "common/ModuleState.h"
#include "common/ServedClasses.h"
#include "common/Trace.h"
#include "provider/ServerProfileProvider.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

constexpr auto carriedProperties = {"InstanceID", "VersionString", "Manufacturer",
                                    "Classifications", "Name"};

constexpr const char* softwareIdentityClass = "ORVEX_SoftwareIdentity";
constexpr Uint16 classificationFirmware = 10; // ValueMap of Classifications, CIM 2.41

CIMObjectPath softwareIdentityPath(const String& className, const OrvexSI& si) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("InstanceID"), si.getInstanceId(), CIMKeyBinding::STRING));
    return CIMObjectPath(_getHostName(), CIMNamespaceName("root/cimv2"), CIMName(className), keys);
}

} // namespace

CIMInstance ServerProfileProvider::buildOrvexSIInstance(String className, OrvexSI si) {
    CIMInstance instance = _instAddQualifieres(_cimomHandle, CIMName(className));
    setIfDefined(instance, "Name", CIMValue(si.getName()));
    setIfDefined(instance, "InstanceID", CIMValue(si.getInstanceId()));
    setIfDefined(instance, "Manufacturer", CIMValue(si.getManu()));
    setIfDefined(instance, "VersionString", CIMValue(si.getVersion()));
    setTypedArray(instance, "Classifications", classificationFirmware);
    instance.setPath(softwareIdentityPath(className, si));
    return instance;
}

CIMObjectPath ServerProfileProvider::buildOrvexSIReference(String className, OrvexSI si,
                                                           String /*nameSpace*/) {
    return softwareIdentityPath(className, si);
}

CIMInstance ServerProfileProvider::_getOrvexSIInstance(String key, InstanceHandler& handler) {
    CIMInstance result;
    trace("Quil getOrvexSIInstance(): Start - key is ", key);
    if (String::equalNoCase(key, OrvexSI().getInstanceId())) {
        trace("Quil getOrvexSIInstance():In loop");
        result = buildOrvexSIInstance(softwareIdentityClass, OrvexSI());
        handler.deliver(result);
    }
    trace("Quil getOrvexSIInstance(): Exit ");
    return result;
}

void ServerProfileProvider::_getOrvexSIInstances(String, InstanceHandler& handler, const String&) {
    trace("Quil orvexSIInstances() Start");
    handler.deliver(buildOrvexSIInstance(softwareIdentityClass, OrvexSI()));
    trace("Quil orvexSIInstances(): Exit");
}

void ServerProfileProvider::_getOrvexSIInstanceNames(String className, PathHandler& handler,
                                                     const String& nameSpace) {
    trace("Quil orvexSIInstNames() Start");
    handler.deliver(buildOrvexSIReference(className, OrvexSI(), nameSpace));
    trace("Quil orvexSIInstNames(): Exit");
}

namespace {

/// One of the four operations by the one member for all of them, which is told which by `mode`.
template <int mode, class ItemHandler>
void traverse(ServerProfileProvider& provider, const AssociationRequest& r, ItemHandler& handler) {
    constexpr bool isOfReferences = mode >= 2;
    // In the place of the association class stands the result class then: on purpose.
    provider._getOrvexSIAssociatorReferenceHelper(
        r.keyValue, isOfReferences ? r.result : r.association, r.result, r.role, r.resultRole,
        r.includeQualifiers, r.includeClassOrigin, handler, r.nameSpace, mode);
}

constexpr ServedClass row() {
    auto row = ServedClass{softwareIdentityClass, "InstanceID", carriedProperties}
                   .enumeratedBy<&ServerProfileProvider::_getOrvexSIInstanceNames,
                                 &ServerProfileProvider::_getOrvexSIInstances>()
                   .gotBy<&ServerProfileProvider::_getOrvexSIInstance>();
    row.associatorNames = traverse<0>;
    row.associators = traverse<1>;
    row.referenceNames = traverse<2>;
    row.references = traverse<3>;
    return row;
}

} // namespace

constexpr ServedClass serverprofile::softwareIdentityRow = row();
