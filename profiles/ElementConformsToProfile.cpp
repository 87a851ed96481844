// CIM_ElementConformsToProfile: enumerated by asking the server for the elements, got by echo.
#include "profiles/ProfileAssociations.h"
#include "provider/ReadBack.h"
#include "provider/Trace.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

/// The names of a row's elements, and the path of the profile to which they conform.
struct Conformance {
    const char* elementClass;
    Array<CIMObjectPath> elements;
    CIMObjectPath profile;
};

Conformance readRow(ServerProfileProvider& provider, const ConformanceRow& row,
                    const String& nameSpace) {
    Conformance read;
    read.elementClass = row.elementClass;
    const ReadBack readBack(provider.cimomHandle(), nameSpace);
    guarded(readBack, read.elements, row.elementClass, {row.failure});
    read.profile = profilePath(provider, row.profile, nameSpace);
    return read;
}

template <class Handler>
void deliverRow(Handler& handler, const Conformance& row, const String& nameSpace) {
    for (Uint32 i = 0; i < row.elements.size(); ++i) {
        deliver(handler, conforming(row.profile, row.elements[i], row.elementClass), nameSpace);
    }
}

/// The first two rows are both read before anything is delivered.
template <class Handler>
void deliverRows(ServerProfileProvider& provider, Handler& handler, const String& nameSpace) {
    trace(" Quil ElementConformsToProfile Instances ");
    const Conformance fabric = readRow(provider, conformance[0], nameSpace);
    trace(" Quil ElementConformsToProfile ei - Switch ");
    const Conformance theSwitch = readRow(provider, conformance[1], nameSpace);
    deliverRow(handler, fabric, nameSpace);
    deliverRow(handler, theSwitch, nameSpace);
    deliverRow(handler, readRow(provider, conformance[2], nameSpace), nameSpace);
}

} // namespace

void ServerProfileProvider::_getElementConformstoProfileInstanceNames(String, PathHandler& handler,
                                                                      const String& nameSpace) {
    deliverRows(*this, handler, nameSpace);
}

void ServerProfileProvider::_getElementConformstoProfileInstances(String, InstanceHandler& handler,
                                                                  const String& nameSpace) {
    deliverRows(*this, handler, nameSpace);
}

// Any pair that the client names is echoed, as an instance without a path; the element's class is
// the one that the client named.
CIMInstance
ServerProfileProvider::_getElementConformstoProfileInstance(const CIMObjectPath& instanceName,
                                                            InstanceHandler& handler) {
    Association named = namedAssociation(elementConformsToProfile, instanceName);
    const CIMInstance echo = named.secondIs(named.second().getClassName()).instance();
    handler.deliver(echo);
    return echo;
}
