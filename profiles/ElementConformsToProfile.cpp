// CIM_ElementConformsToProfile: enumerated by asking the server for the elements, got by echo.
#include "common/ServedClasses.h"
#include "common/Trace.h"
#include "profiles/ProfileAssociations.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

/// The first two rows are both read before anything is delivered.
template <class Handler>
void deliverRows(const Request& request, Handler& handler) {
    trace(" Quil ElementConformsToProfile Instances ");
    const Conformance fabric = readConformance(request, conformance[0]);
    trace(" Quil ElementConformsToProfile ei - Switch ");
    const Conformance theSwitch = readConformance(request, conformance[1]);
    deliverConformance(handler, fabric);
    deliverConformance(handler, theSwitch);
    deliverConformance(handler, readConformance(request, conformance[2]));
}

} // namespace

void ServerProfileProvider::_getElementConformstoProfileInstanceNames(String, PathHandler& handler,
                                                                      const String& nameSpace) {
    deliverRows({*this, nameSpace}, handler);
}

void ServerProfileProvider::_getElementConformstoProfileInstances(String, InstanceHandler& handler,
                                                                  const String& nameSpace) {
    deliverRows({*this, nameSpace}, handler);
}

// Any pair that the client names is echoed, as an instance without a path; the element's class is
// the one that the client named.
CIMInstance
ServerProfileProvider::_getElementConformstoProfileInstance(const CIMObjectPath& instanceName,
                                                            InstanceHandler& handler) {
    CIMInstance echo = namedInstance(elementConformsToProfile, instanceName, NoPath::IsAnError);
    handler.deliver(echo);
    return echo;
}

constexpr ServedClass serverprofile::elementConformsToProfileRow =
    servedAssociation(elementConformsToProfile)
        .enumeratedBy<&ServerProfileProvider::_getElementConformstoProfileInstanceNames,
                      &ServerProfileProvider::_getElementConformstoProfileInstances>()
        .gotBy<&ServerProfileProvider::_getElementConformstoProfileInstance>();
