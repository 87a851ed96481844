// CIM_CommMechanismForManager and CIM_NamespaceInManager: the object manager with each of what it
// offers, enumerated by asking the server, got by echo.
#include "common/Association.h"
#include "common/ReadBack.h"
#include "common/ServedClasses.h"
#include "common/Trace.h"
#include "provider/ServerProfileProvider.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

/// The same traces for both classes, one list for both read-backs: on purpose.
void enumerateMembers(CIMOMHandle& handle, const AssociationClass& cimClass,
                      const char* memberClass, ResponseHandler& handler, const String& nameSpace,
                      bool instances) {
    trace(" Quil NSInMgrHelper - Start ");
    const ReadBack readBack(handle, nameSpace);
    Array<CIMObjectPath> list;
    if (!guarded(readBack, list, objectManagerClass,
                 {" Quil exception ni for CIM_Namespace -Exiting "}))
        return;
    const CIMObjectPath manager = firstOf(list);
    guarded(readBack, list, memberClass,
            {" Quil exception ei for CIM_CIMXMLCommunicationMechanism "});
    Association member(cimClass, nameSpace);
    member.from(manager);
    for (Uint32 i = 0; i < list.size(); ++i)
        deliver(handler, instances, member.to(list[i]));
}

} // namespace

void ServerProfileProvider::_getCommMechForMgrHelper(String, Handler& handler,
                                                     const String& nameSpace, bool instances) {
    enumerateMembers(_cimomHandle, commMechanismForManager, communicationMechanismClass, handler,
                     nameSpace, instances);
}

void ServerProfileProvider::_getNSInMgrHelper(String, Handler& handler, const String& nameSpace,
                                              bool instances) {
    enumerateMembers(_cimomHandle, namespaceInManager, namespaceClass, handler, nameSpace,
                     instances);
}

CIMInstance ServerProfileProvider::_getCommMechForMgrInstance(const CIMObjectPath& path,
                                                              InstanceHandler& handler) {
    return echo(commMechanismForManager, path, handler, "getCommMechForMgrInstance(): Start ",
                "getCommMechForMgrInstance () - Exit ");
}

CIMInstance ServerProfileProvider::_getNSInMgrInstance(const CIMObjectPath& path,
                                                       InstanceHandler& handler) {
    return echo(namespaceInManager, path, handler, "getNSInMgrInstance(): Start ",
                "getNSInMgrInstance () - Exit ");
}

constexpr ServedClass serverprofile::commMechanismForManagerRow =
    servedAssociation(commMechanismForManager)
        .enumeratedBy<&ServerProfileProvider::_getCommMechForMgrHelper>()
        .gotBy<&ServerProfileProvider::_getCommMechForMgrInstance>();

constexpr ServedClass serverprofile::namespaceInManagerRow =
    servedAssociation(namespaceInManager)
        .enumeratedBy<&ServerProfileProvider::_getNSInMgrHelper>()
        .gotBy<&ServerProfileProvider::_getNSInMgrInstance>();
