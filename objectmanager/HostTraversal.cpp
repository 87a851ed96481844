// Traversals from the host of the object manager.
#include "common/OwnObjects.h"
#include "common/ReadBack.h"
#include "common/Selection.h"
#include "common/Trace.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

constexpr int hostedServices = 1;
constexpr int hostedAccessPoints = 2;
constexpr int both = 7; // the third bit has no use
constexpr SelectionRow selection[] = {
    {"CIM_HostedService", hostedServices},
    {"CIM_HostedAccessPoint", hostedAccessPoints},
};

/// One association class of the host: what it traces, and where its far ends are read.
struct Branch {
    int bit;
    const char* step;
    const AssociationClass& association;
    const char* farClass;
};
constexpr Branch branches[] = {
    {hostedServices, " Quil HostedService assoc - 1 ", hostedService, objectManagerClass},
    {hostedAccessPoints, " Quil HostedAccessPoint - 1 ", hostedAccessPoint,
     communicationMechanismClass},
};

/// Reads the far ends of each selected branch into one list (one for all: on purpose) and calls
/// visit(branch, list).
template <class List, class Visit>
void forEachBranch(ServerProfileProvider& provider, const String& keyValue, int bits,
                   const String& nameSpace, List list, Visit visit) {
    const ReadBack readBack(provider.cimomHandle(), nameSpace);
    for (const Branch& branch : branches) {
        if ((bits & branch.bit) == 0)
            continue;
        trace(branch.step);
        if (String::equalNoCase(keyValue, OrvexOMHost::getName())) {
            trace(" Quil key value matched ");
            const char* const failure =
                branch.bit == hostedServices
                    ? managersUnread(list)
                    : " Quil exception ei for CIM_CIMXMLCommunicationMechanism ";
            guarded(readBack, list, branch.farClass, {failure});
        }
        visit(branch, list);
    }
}

template <class Handler>
void deliverFarEnds(ServerProfileProvider& provider, const String& keyValue, const char* filter,
                    Handler& handler, const String& nameSpace) {
    using List = typename FarEnds<Handler>::List;
    forEachBranch(provider, keyValue, selectTraced(selection, filter, both, keyValue), nameSpace,
                  List(), [&](const Branch&, const List& list) { deliverAll(handler, list); });
}

template <class Handler>
void deliverAssociations(ServerProfileProvider& provider, const String& keyValue,
                         const char* filter, Handler& handler, const String& nameSpace) {
    const int bits = selectTraced(selection, filter, both, keyValue);
    if (bits == 0)
        return;
    using List = Array<CIMObjectPath>;
    const CIMObjectPath host = hostPath({provider, nameSpace});
    forEachBranch(provider, keyValue, bits, nameSpace, List(),
                  [&](const Branch& branch, const List& list) {
                      Association hosted(branch.association, nameSpace);
                      hosted.from(host);
                      for (Uint32 i = 0; i < list.size(); ++i)
                          deliver(handler, hosted.to(list[i]));
                  });
}

} // namespace

void ServerProfileProvider::_getOrvexOMHostAssociatorNames(String keyValue, Text assocClass,
                                                           Text resultClass, Text, Text,
                                                           PathHandler& handler,
                                                           const String& nameSpace) {
    trace(" Quil orvexOMHostAssociatorNames(): assoc class is ", assocClass);
    trace(" Quil orvexOMHostAssociatorNames(): result class is ", resultClass);
    deliverFarEnds(*this, keyValue, assocClass, handler, nameSpace);
}

void ServerProfileProvider::_getOrvexOMHostAssociators(String keyValue, Text assocClass,
                                                       Text resultClass, Text, Text, bool, bool,
                                                       const CIMPropertyList&,
                                                       ObjectHandler& handler,
                                                       const String& nameSpace) {
    trace(" Quil orvexOMHostAssociators(): assoc class is ", assocClass);
    trace(" Quil orvexOMHostAssociators(): result class is ", resultClass);
    deliverFarEnds(*this, keyValue, assocClass, handler, nameSpace);
}

void ServerProfileProvider::_getOrvexOMHostReferenceNames(String keyValue, Text resultClass, Text,
                                                          PathHandler& handler,
                                                          const String& nameSpace) {
    trace(" Quil orvexOMHostReferenceNames(): result class is ", resultClass);
    deliverAssociations(*this, keyValue, resultClass, handler, nameSpace);
}

void ServerProfileProvider::_getOrvexOMHostReferences(String keyValue, Text resultClass, Text, bool,
                                                      bool, const CIMPropertyList&,
                                                      ObjectHandler& handler,
                                                      const String& nameSpace) {
    trace(" Quil orvexOMHostReferences(): result class is ", resultClass);
    deliverAssociations(*this, keyValue, resultClass, handler, nameSpace);
}
