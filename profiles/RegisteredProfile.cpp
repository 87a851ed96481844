#include "profiles/RegisteredProfile.h"

#include "profiles/PropertyFill.h"

PEGASUS_USING_PEGASUS;
using serverprofile::fillProperty;

RegisteredProfile::RegisteredProfile(String instanceId_, String registeredName_)
    : registeredName(registeredName_), instanceId(instanceId_) {
}

void RegisteredProfile::initialize() {
}

void RegisteredProfile::setRegisteredName(String name) {
    registeredName = name;
}

String RegisteredProfile::getInstanceId() const {
    return instanceId;
}

String RegisteredProfile::getRegisteredName() const {
    return registeredName;
}

bool RegisteredProfile::getInstanceId(CIMProperty& property) const {
    return fillProperty(property, "InstanceID", CIMValue(instanceId));
}

bool RegisteredProfile::getRegisteredName(CIMProperty& property) const {
    return fillProperty(property, "RegisteredName", CIMValue(registeredName));
}

bool RegisteredProfile::getRegisteredVersion(CIMProperty& property) const {
    return fillProperty(property, "RegisteredVersion", CIMValue(String("1.1.0")));
}

bool RegisteredProfile::getOtherRegisteredOrganization(CIMProperty& property) const {
    return fillProperty(property, "OtherRegisteredOrganization", CIMValue(String()));
}

bool RegisteredProfile::getRegisteredOrganization(CIMProperty& property) const {
    return fillProperty(property, "RegisteredOrganization", CIMValue(Sint32(11)));
}

bool RegisteredProfile::getAdvertiseTypes(CIMProperty& property) const {
    return fillProperty(property, "AdvertiseTypes", CIMValue(Sint32(0)));
}

bool RegisteredProfile::getAdvertiseTypeDescriptions(CIMProperty& property) const {
    return fillProperty(property, "AdvertiseTypeDescriptions", CIMValue(Sint32(0)));
}
