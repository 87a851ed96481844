// Traversals from a registered profile.
#include "common/ModuleState.h"
#include "common/ReadBack.h"
#include "common/Trace.h"
#include "profiles/ProfileAssociations.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

// Far ends

/// Where the elements that conform to a profile come from. Without a class: the local switch.
struct ElementSource {
    const char* instanceId;
    const char* step;
    const char* elementClass;
    const char* namesFailure;
    const char* objectsFailure;
};
constexpr ElementSource elementSources[] = {
    {"Orvex1", " Quil ElementConformsToProfile assoc - Fabric ", "ORVEX_Vsan",
     " Quil ni for ORVEX_AdminDomain exception ", " Quil ei for ORVEX_AdminDomain exception "},
    {"Orvex2", " Quil ElementConformsToProfile assoc - Switch ", nullptr,
     " Quil ni for ORVEX_ComputerSystem exception ",
     " Quil gi for ORVEX_ComputerSystem exception "},
    {"Orvex6", " Quil ElementConformsToProfile assoc - Server ", "CIM_ObjectManager",
     " Quil ni for CIM_ObjectManager ", " Quil ei for CIM_ObjectManager "},
};

const char* failureOf(const ElementSource& source, const Array<CIMObjectPath>&) {
    return source.namesFailure;
}

const char* failureOf(const ElementSource& source, const Array<CIMInstance>&) {
    return source.objectsFailure;
}

void append(Array<CIMObjectPath>& list, const CIMInstance& instance) {
    list.append(instance.getPath());
}

void append(Array<CIMInstance>& list, const CIMInstance& instance) { list.append(instance); }

CIMObjectPath localSwitchPath(const String& nameSpace) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), String("localswitch"), CIMKeyBinding::STRING));
    return CIMObjectPath(_getHostName(), CIMNamespaceName(nameSpace),
                         CIMName("ORVEX_PhysicalComputerSystem"), keys);
}

template <class List>
void readConformingElements(const Request& request, const String& keyValue, List& list) {
    const ReadBack readBack(request.provider.cimomHandle(), request.nameSpace);
    for (const ElementSource& source : elementSources) {
        if (!String::equalNoCase(keyValue, source.instanceId))
            continue;
        trace(source.step);
        if (source.elementClass != nullptr) {
            guarded(readBack, list, source.elementClass, {failureOf(source, list)});
            return;
        }
        // A switch that could not be read is appended all the same: on purpose.
        CIMInstance localSwitch;
        guarded(readBack, localSwitch, localSwitchPath(request.nameSpace),
                {failureOf(source, list)});
        trace("Quil - append localSwInst");
        append(list, localSwitch);
        return;
    }
}

template <class Handler>
void deliverFarEnds(const Request& request, const String& keyValue, int bits,
                    const char* resultClass, Handler& handler) {
    if ((bits & selected::subProfiles) != 0) {
        trace(" Quil SubProfileRequiresProfile assoc ");
        if (takes(resultClass, "CIM_RegisteredSubProfile")) {
            const Sint32 index = sourceIndex(request, profileEntries, keyValue);
            trace("Quil index of RegProfile is ", index);
            if (index == -1)
                return; // ends the whole operation: on purpose
            for (const SubProfilePair& pair : subProfilePairs)
                if (static_cast<Sint32>(pair.profile) == index)
                    deliverEntry(handler, request, subProfileEntries, pair.subProfile);
        }
    }
    if ((bits & selected::referencedProfiles) != 0)
        trace(" Quil Referenced Profile assoc ");
    if ((bits & selected::conformingElements) != 0) {
        trace(" Quil ElementConformsToProfile assoc - 1 ");
        typename FarEnds<Handler>::List list;
        readConformingElements(request, keyValue, list);
        deliverAll(handler, list);
    }
    if ((bits & selected::softwareIdentity) != 0) {
        trace(" Quil ESI assoc ");
        deliverSoftwareIdentity(handler, request); // whatever the source
    }
}

// Associations

/// What the two reference operations trace; `unknown` may be missing.
struct ReferenceTexts {
    const char* subProfiles;
    const char* index;
    const char* unknown;
    const char* conforming;
};
constexpr ReferenceTexts referenceNamesTexts = {
    " Quil SubProfileRequiresProfile referenceNames ",
    " Quil Index of SubProf is ",
    "Quil index of Reg Profile is ",
    " Quil ElementConformsToProfile referenceNames ",
};
constexpr ReferenceTexts referencesTexts = {
    " Quil SubProfileRequiresProfile reference ",
    "Quil index of RegProfile is ",
    nullptr,
    " Quil ElementConformsToProfile references ",
};

template <class Handler>
void deliverConforming(const Request& request, Sint32 index, Handler& handler) {
    for (const ConformanceRow& row : conformance)
        if (static_cast<Sint32>(row.profile) == index)
            deliverConformance(handler, readConformance(request, row));
}

template <class Handler>
void deliverAssociations(const Request& request, const ReferenceTexts& texts,
                         const String& keyValue, int bits, Handler& handler) {
    if ((bits & selected::subProfiles) != 0) {
        trace(texts.subProfiles);
        const Sint32 index = sourceIndex(request, profileEntries, keyValue);
        trace(texts.index, index);
        if (index == -1) {
            if (texts.unknown != nullptr)
                trace(texts.unknown, index);
            return; // as above
        }
        deliverRequirements(handler, request, [&](const SubProfilePair& pair) {
            return static_cast<Sint32>(pair.profile) == index;
        });
    }
    if ((bits & selected::referencedProfiles) != 0)
        trace(" Quil Referenced Profile assoc ");
    if ((bits & selected::conformingElements) != 0) {
        trace(texts.conforming);
        deliverConforming(request, sourceIndex(request, profileEntries, keyValue), handler);
    }
    if ((bits & selected::softwareIdentity) != 0) {
        trace(" Quil ESI references ");
        const Sint32 index = sourceIndex(request, profileEntries, keyValue);
        if (index != -1)
            deliver(handler,
                    implementedBy(request, profileEntries)
                        .to(entryPath(request, profileEntries, static_cast<Uint32>(index))));
    }
}

} // namespace

void ServerProfileProvider::_getRegisteredProfileAssociatorNames(String keyValue, Text assocClass,
                                                                 Text resultClass, Text, Text,
                                                                 PathHandler& handler,
                                                                 const String& nameSpace) {
    trace(" Quil regProfAssociatorNames(): assoc class is ", assocClass);
    deliverFarEnds({*this, nameSpace}, keyValue, selected::by(assocClass), resultClass, handler);
}

void ServerProfileProvider::_getRegisteredProfileAssociators(String keyValue, Text assocClass,
                                                             Text resultClass, Text, Text, bool,
                                                             bool, const CIMPropertyList&,
                                                             ObjectHandler& handler,
                                                             const String& nameSpace) {
    trace(" Quil regprofAssociators(): assoc class is ", assocClass, " keyValue is ", keyValue);
    deliverFarEnds({*this, nameSpace}, keyValue, selected::by(assocClass), resultClass, handler);
}

void ServerProfileProvider::_getRegisteredProfileReferenceNames(String keyValue, Text resultClass,
                                                                Text, PathHandler& handler,
                                                                const String& nameSpace) {
    trace(" Quil regProfReferenceNames(): result class is ", resultClass);
    deliverAssociations({*this, nameSpace}, referenceNamesTexts, keyValue,
                        selected::by(resultClass), handler);
}

void ServerProfileProvider::_getRegisteredProfileReferences(String keyValue, Text resultClass, Text,
                                                            bool, bool, const CIMPropertyList&,
                                                            ObjectHandler& handler,
                                                            const String& nameSpace) {
    trace(" Quil regProfReferences(): result class is ", resultClass);
    deliverAssociations({*this, nameSpace}, referencesTexts, keyValue, selected::by(resultClass),
                        handler);
}
