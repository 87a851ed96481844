#include "objectmanager/ManagerAssociations.h"

#include "provider/Trace.h"

PEGASUS_USING_PEGASUS;

namespace serverprofile {

CIMObjectPath hostPath(ServerProfileProvider& provider, const String& nameSpace) {
    return provider.buildOrvexOMHostReference("ORVEX_ObjectManagerHost", OrvexOMHost(), nameSpace);
}

CIMInstance echo(const AssociationClass& cimClass, const CIMObjectPath& path,
                 InstanceResponseHandler& handler, const char* startTrace, const char* exitTrace) {
    trace(startTrace);
    CIMInstance instance = namedAssociation(cimClass, path, NoPath::IsAnEmptyEnd).instance();
    instance.setPath(path);
    handler.deliver(instance);
    trace(exitTrace);
    return instance;
}

} // namespace serverprofile
