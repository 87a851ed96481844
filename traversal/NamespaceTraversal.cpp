// Traversals from a namespace: to the object managers.
#include "common/Selection.h"
#include "common/ServedClasses.h"
#include "common/Trace.h"
#include "traversal/ManagerEnds.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

constexpr int managers = 1;
constexpr int all = 7; // the other bits have no use
constexpr SelectionRow selection[] = {{"CIM_NamespaceInManager", managers}};

/// Whether `filter` selects the object managers; traces `step` when it does.
bool selectManagers(const char* filter, const String& keyValue, const char* step) {
    if (selectTraced(selection, filter, all, keyValue) == 0)
        return false;
    trace(step);
    return true;
}

// "In" and "in": on purpose.
constexpr const char* associatorsStep = " Quil NS In Mgr - 1 ";
constexpr const char* referencesStep = " Quil NS in Mgr - 1 ";

} // namespace

void ServerProfileProvider::_getNamespaceAssociatorNames(String keyValue, Text assocClass,
                                                         Text resultClass, Text, Text,
                                                         PathHandler& handler,
                                                         const String& nameSpace) {
    trace(" Quil NamespaceAssociatorNames(): assoc class is ", assocClass);
    trace(" Quil NamespaceAssociatorNames(): result class is ", resultClass);
    if (selectManagers(assocClass, keyValue, associatorsStep))
        deliverManagers({*this, nameSpace}, handler);
}

void ServerProfileProvider::_getNamespaceAssociators(String keyValue, Text assocClass,
                                                     Text resultClass, Text, Text, bool, bool,
                                                     const CIMPropertyList&, ObjectHandler& handler,
                                                     const String& nameSpace) {
    trace(" Quil NamespaceAssociators(): assoc class is ", assocClass);
    trace(" Quil NamespaceAssociators(): result class is ", resultClass);
    if (selectManagers(assocClass, keyValue, associatorsStep))
        deliverManagers({*this, nameSpace}, handler);
}

void ServerProfileProvider::_getNamespaceReferenceNames(String keyValue, Text resultClass, Text,
                                                        PathHandler& handler,
                                                        const String& nameSpace,
                                                        const CIMObjectPath& objectName) {
    trace(" Quil NamespaceReferenceNames(): result class is ", resultClass);
    if (selectManagers(resultClass, keyValue, referencesStep))
        deliverManagerAssociations({*this, nameSpace}, namespaceInManager, objectName, handler);
}

void ServerProfileProvider::_getNamespaceReferences(String keyValue, Text resultClass, Text, bool,
                                                    bool, const CIMPropertyList&,
                                                    ObjectHandler& handler, const String& nameSpace,
                                                    const CIMObjectPath& objectName) {
    trace(" Quil NamespaceReferences(): result class is ", resultClass);
    if (selectManagers(resultClass, keyValue, referencesStep))
        deliverManagerAssociations({*this, nameSpace}, namespaceInManager, objectName, handler);
}

// Traversed only under its PG_ name: on purpose.
constexpr ServedClass serverprofile::cimNamespaceRow = {namespaceClass, "Name"};

constexpr ServedClass serverprofile::pgNamespaceRow =
    ServedClass{"PG_Namespace", "Name"}
        .traversedBy<&ServerProfileProvider::_getNamespaceAssociatorNames,
                     &ServerProfileProvider::_getNamespaceAssociators,
                     &ServerProfileProvider::_getNamespaceReferenceNames,
                     &ServerProfileProvider::_getNamespaceReferences>();
