// CIM_ElementConformsToProfile: enumerated by asking the server for the elements, got by echo.
#include "profiles/ProfileAssociations.h"
#include "provider/Trace.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

/// The first two rows are both read before anything is delivered.
template <class Handler>
void deliverRows(ServerProfileProvider& provider, Handler& handler, const String& nameSpace) {
    trace(" Quil ElementConformsToProfile Instances ");
    const Conformance fabric = readConformance(provider, conformance[0], nameSpace);
    trace(" Quil ElementConformsToProfile ei - Switch ");
    const Conformance theSwitch = readConformance(provider, conformance[1], nameSpace);
    deliverConformance(handler, fabric, nameSpace);
    deliverConformance(handler, theSwitch, nameSpace);
    deliverConformance(handler, readConformance(provider, conformance[2], nameSpace), nameSpace);
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
    const CIMInstance echo =
        namedAssociation(elementConformsToProfile, instanceName, NoPath::IsAnError).instance();
    handler.deliver(echo);
    return echo;
}
