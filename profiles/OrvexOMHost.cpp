#include "profiles/OrvexOMHost.h"

#include "profiles/PropertyFill.h"
#include "provider/ModuleState.h"
#include "provider/Trace.h"

PEGASUS_USING_PEGASUS;
using serverprofile::fillProperty;

namespace {
char classHostName[serverprofile::hostNameCapacity] = {};
Sint32 classNameFormat = 0;
} // namespace

OrvexOMHost::OrvexOMHost(String) {
}

OrvexOMHost::OrvexOMHost(char* name) {
    serverprofile::copyHostName(classHostName, name);
}

OrvexOMHost::OrvexOMHost(char* name, int flag) {
    serverprofile::copyHostName(classHostName, name);
    classNameFormat = flag;
}

OrvexOMHost::~OrvexOMHost() {
    serverprofile::trace("OrvexOMHost - destructor(): Start ");
}

void OrvexOMHost::initialize() {
}

String OrvexOMHost::getCreationClassName() {
    return String("ORVEX_ObjectManagerHost");
}

String OrvexOMHost::getName() {
    return String(classHostName);
}

String OrvexOMHost::getNameFormat() {
    return String(classNameFormat == 0 ? "Other" : "IP");
}

bool OrvexOMHost::getCreationClassName(CIMProperty& property) const {
    return fillProperty(property, "CreationClassName", CIMValue(getCreationClassName()));
}

bool OrvexOMHost::getName(CIMProperty& property) const {
    return fillProperty(property, "Name", CIMValue(getName()));
}

bool OrvexOMHost::getNameFormat(CIMProperty& property) const {
    return fillProperty(property, "NameFormat", CIMValue(getNameFormat()));
}

bool OrvexOMHost::getElementName(CIMProperty& property) const {
    return fillProperty(property, "ElementName", CIMValue(String()));
}

bool OrvexOMHost::getDescription(CIMProperty& property) const {
    return fillProperty(property, "Description", CIMValue(String()));
}

bool OrvexOMHost::getOperationalStatus(CIMProperty& property) const {
    return fillProperty(property, "OperationalStatus", CIMValue(Boolean(true)));
}
