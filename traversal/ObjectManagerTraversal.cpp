// Traversals from the object manager.
#include "common/OwnObjects.h"
#include "common/ReadBack.h"
#include "common/Selection.h"
#include "common/ServedClasses.h"
#include "common/Trace.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

constexpr int hosts = 1;
constexpr int namespaces = 2;
constexpr int mechanisms = 4;
constexpr int profiles = 8;
constexpr int all = 15;
constexpr SelectionRow selection[] = {
    {"CIM_HostedService", hosts},
    {"CIM_NamespaceInManager", namespaces},
    {"CIM_CommMechanismForManager", mechanisms},
    {"CIM_ElementConformsToProfile", profiles},
};

/// The profile to which the object manager conforms: "Server".
constexpr Uint32 serverProfile = 2;

/// What the object manager offers, as the server's other providers publish it.
struct Member {
    int bit;
    const char* step;
    const AssociationClass& association;
    const char* memberClass;
    const char* failure;
};
constexpr Member members[] = {
    {namespaces, " Quil NamespaceInManager - 1 ", namespaceInManager, namespaceClass,
     " Quil exception ei for CIM_Namespace "},
    {mechanisms, " Quil CommMechanismForManager - 1 ", commMechanismForManager,
     communicationMechanismClass, " Quil exception ei for CIM_CIMXMLCommunicationMechanism "},
};

// CIM_Namespace whatever the class: on purpose.
const char* secondFailureLine(const Array<CIMObjectPath>&) { return nullptr; }
const char* secondFailureLine(const Array<CIMInstance>&) {
    return "ObjMgrAssoc:(): Exception - ei CIM_Namespace ";
}

/// Reads the members of each selected class into `list` (one for all: on purpose) and calls
/// visit(member, list).
template <class List, class Visit>
void forEachMember(const Request& request, int bits, List list, Visit visit) {
    const ReadBack readBack(request.provider.cimomHandle(), request.nameSpace);
    for (const Member& member : members) {
        if ((bits & member.bit) != 0) {
            trace(member.step);
            guarded<CIMException>(readBack, list, member.memberClass,
                                  {member.failure, secondFailureLine(list)});
            visit(member, list);
        }
    }
}

template <class Handler>
void deliverFarEnds(const Request& request, int bits, Handler& handler) {
    using List = typename FarEnds<Handler>::List;
    if ((bits & hosts) != 0) {
        trace(" Quil HostedService assoc - 1 ");
        deliverHost(handler, request);
    }
    forEachMember(request, bits, List(),
                  [&](const Member&, const List& list) { deliverAll(handler, list); });
    if ((bits & profiles) != 0) {
        trace(" Quil ElementConformsToProfile - 1 ");
        deliverEntry(handler, request, profileEntries, serverProfile);
    }
}

template <class Handler>
void deliverAssociations(const Request& request, int bits, Handler& handler) {
    using List = Array<CIMObjectPath>;
    if (bits == 0)
        return;
    List managers;
    // The trace's CIM_Namespace: on purpose.
    if (!guarded<CIMException>(ReadBack(request.provider.cimomHandle(), request.nameSpace),
                               managers, objectManagerClass,
                               {" Quil exception ni for CIM_Namespace -Exiting "}))
        return;
    const CIMObjectPath manager = firstOf(managers);

    if ((bits & hosts) != 0) {
        trace(" Quil HostedService assoc - 1 ");
        const CIMObjectPath host = hostPath(request);
        deliver(handler, Association(hostedService, request.nameSpace).from(host).to(manager));
    }
    // The list of the members begins with the object managers, see forEachMember().
    forEachMember(request, bits, managers, [&](const Member& member, const List& list) {
        Association association(member.association, request.nameSpace);
        association.from(manager);
        for (Uint32 i = 0; i < list.size(); ++i)
            deliver(handler, association.to(list[i]));
    });
    if ((bits & profiles) != 0) {
        trace(" Quil ElementConformsToProfile - 1 ");
        deliver(handler, conforming(request, serverProfile, objectManagerClass)
                             .to(manager)
                             .secondPropertyFirst());
    }
}

} // namespace

void ServerProfileProvider::_getObjMgrAssociatorNames(String keyValue, Text assocClass,
                                                      Text resultClass, Text, Text,
                                                      PathHandler& handler,
                                                      const String& nameSpace) {
    trace(" Quil ObjMgrAssociatorNames(): assoc class is ", assocClass);
    trace(" Quil ObjMgrAssociatorNames(): result class is ", resultClass);
    deliverFarEnds({*this, nameSpace}, selectTraced(selection, assocClass, all, keyValue), handler);
}

void ServerProfileProvider::_getObjMgrAssociators(String keyValue, Text assocClass,
                                                  Text resultClass, Text, Text, bool, bool,
                                                  const CIMPropertyList&, ObjectHandler& handler,
                                                  const String& nameSpace) {
    trace(" Quil ObjMgrAssociators(): assoc class is ", assocClass);
    trace(" Quil ObjMgrAssociators(): result class is ", resultClass);
    deliverFarEnds({*this, nameSpace}, selectTraced(selection, assocClass, all, keyValue), handler);
}

// The other operation's name in its trace: on purpose.
void ServerProfileProvider::_getObjMgrReferenceNames(String keyValue, Text resultClass, Text,
                                                     PathHandler& handler,
                                                     const String& nameSpace) {
    trace(" Quil ObjMgrReferences(): result class is ", resultClass);
    deliverAssociations({*this, nameSpace}, selectTraced(selection, resultClass, all, keyValue),
                        handler);
}

void ServerProfileProvider::_getObjMgrReferences(String keyValue, Text resultClass, Text, bool,
                                                 bool, const CIMPropertyList&,
                                                 ObjectHandler& handler, const String& nameSpace) {
    trace(" Quil ObjMgrReferences(): result class is ", resultClass);
    deliverAssociations({*this, nameSpace}, selectTraced(selection, resultClass, all, keyValue),
                        handler);
}

// Published by another provider of the server, as are the mechanism and the namespaces.
constexpr ServedClass serverprofile::objectManagerRow =
    ServedClass{objectManagerClass, "Name"}
        .traversedBy<&ServerProfileProvider::_getObjMgrAssociatorNames,
                     &ServerProfileProvider::_getObjMgrAssociators,
                     &ServerProfileProvider::_getObjMgrReferenceNames,
                     &ServerProfileProvider::_getObjMgrReferences>();
