#include "common/Records.h"

#include "common/ModuleState.h"
#include "common/Trace.h"

PEGASUS_USING_PEGASUS;

namespace {

char classHostName[serverprofile::hostNameCapacity] = {};
Sint32 classNameFormat = 0;

bool fill(CIMProperty& property, const char* name, const CIMValue& value) {
    property = CIMProperty(CIMName(name), value);
    return true;
}

} // namespace

RegisteredProfile::RegisteredProfile(String instanceId_, String registeredName_)
    : registeredName(registeredName_), instanceId(instanceId_) {}

bool RegisteredProfile::getInstanceId(CIMProperty& property) const {
    return fill(property, "InstanceID", CIMValue(instanceId));
}

bool RegisteredProfile::getRegisteredName(CIMProperty& property) const {
    return fill(property, "RegisteredName", CIMValue(registeredName));
}

bool RegisteredProfile::getRegisteredVersion(CIMProperty& property) const {
    return fill(property, "RegisteredVersion", CIMValue(String("1.1.0")));
}

bool RegisteredProfile::getOtherRegisteredOrganization(CIMProperty& property) const {
    return fill(property, "OtherRegisteredOrganization", CIMValue(String()));
}

bool RegisteredProfile::getRegisteredOrganization(CIMProperty& property) const {
    return fill(property, "RegisteredOrganization", CIMValue(Sint32(11)));
}

bool RegisteredProfile::getAdvertiseTypes(CIMProperty& property) const {
    return fill(property, "AdvertiseTypes", CIMValue(Sint32(0)));
}

bool RegisteredProfile::getAdvertiseTypeDescriptions(CIMProperty& property) const {
    return fill(property, "AdvertiseTypeDescriptions", CIMValue(Sint32(0)));
}

OrvexOMHost::OrvexOMHost(char* name) { serverprofile::copyHostName(classHostName, name); }

OrvexOMHost::OrvexOMHost(char* name, int flag) : OrvexOMHost(name) { classNameFormat = flag; }

OrvexOMHost::~OrvexOMHost() { serverprofile::trace("OrvexOMHost - destructor(): Start "); }

String OrvexOMHost::getCreationClassName() { return String("ORVEX_ObjectManagerHost"); }

String OrvexOMHost::getName() { return String(classHostName); }

String OrvexOMHost::getNameFormat() { return String(classNameFormat == 0 ? "Other" : "IP"); }

bool OrvexOMHost::getCreationClassName(CIMProperty& property) const {
    return fill(property, "CreationClassName", CIMValue(getCreationClassName()));
}

bool OrvexOMHost::getName(CIMProperty& property) const {
    return fill(property, "Name", CIMValue(getName()));
}

bool OrvexOMHost::getNameFormat(CIMProperty& property) const {
    return fill(property, "NameFormat", CIMValue(getNameFormat()));
}

bool OrvexOMHost::getElementName(CIMProperty& property) const {
    return fill(property, "ElementName", CIMValue(String()));
}

bool OrvexOMHost::getDescription(CIMProperty& property) const {
    return fill(property, "Description", CIMValue(String()));
}

bool OrvexOMHost::getOperationalStatus(CIMProperty& property) const {
    return fill(property, "OperationalStatus", CIMValue(Boolean(true)));
}
