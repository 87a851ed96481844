// Traversals from a registered subprofile: to the profile that it requires and to the firmware.
#include "common/Trace.h"
#include "profiles/ProfileAssociations.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

template <class Handler>
void deliverFarEnds(const Request& request, const String& keyValue, int bits,
                    const char* resultClass, Handler& handler) {
    if ((bits & selected::subProfiles) != 0) {
        trace(" Quil SubProfileRequiresProfile assoc ");
        if (takes(resultClass, "CIM_RegisteredProfile")) {
            const Sint32 index = sourceIndex(request, subProfileEntries, keyValue);
            if (index == -1) {
                trace("Quil index of RegSubProfile is ", index);
                return; // ends the whole operation: on purpose
            }
            for (const SubProfilePair& pair : subProfilePairs)
                if (static_cast<Sint32>(pair.subProfile) == index)
                    deliverEntry(handler, request, profileEntries, pair.profile);
        }
    }
    if ((bits & selected::softwareIdentity) != 0) {
        trace(" Quil ESI assoc ");
        deliverSoftwareIdentity(handler, request); // whatever the source and the result class
    }
}

/// What the two reference operations trace about the search for the source.
struct ReferenceTexts {
    const char* profiles;
    const char* index;
    const char* unknown;
};
constexpr ReferenceTexts referenceNamesTexts = {
    " Quil SubProfileRequiresProfile referenceNames ",
    " Quil Index of SubProf is ",
    "Quil index of Sub Profile is ",
};
constexpr ReferenceTexts referencesTexts = {
    " Quil SubProfileRequiresProfile reference ",
    " Quil Index of RegProf is ",
    "Quil index of RegSubProfile is ",
};

template <class Handler>
void deliverAssociations(const Request& request, const ReferenceTexts& texts,
                         const String& keyValue, int bits, Handler& handler) {
    if ((bits & selected::subProfiles) != 0) {
        trace(texts.profiles);
        const Sint32 index = sourceIndex(request, subProfileEntries, keyValue);
        trace(texts.index, index);
        if (index == -1) {
            trace(texts.unknown, index);
            return;
        }
        deliverRequirements(handler, request, [&](const SubProfilePair& pair) {
            return static_cast<Sint32>(pair.subProfile) == index;
        });
    }
    if ((bits & selected::softwareIdentity) != 0) {
        trace(" Quil ESI references ");
        const Sint32 index = sourceIndex(request, subProfileEntries, keyValue);
        if (index == -1) {
            trace("Quil index of Reg Profile is ", index);
            return;
        }
        deliver(handler,
                implementedBy(request, subProfileEntries)
                    .to(entryPath(request, subProfileEntries, static_cast<Uint32>(index))));
    }
}

} // namespace

void ServerProfileProvider::_getRegisteredSubProfileAssociatorNames(String keyValue,
                                                                    Text assocClass,
                                                                    Text resultClass, Text, Text,
                                                                    PathHandler& handler,
                                                                    const String& nameSpace) {
    trace(" Quil regSubProfAssociatorNames(): assoc class is ", assocClass);
    deliverFarEnds({*this, nameSpace}, keyValue, selected::by(assocClass), resultClass, handler);
}

void ServerProfileProvider::_getRegisteredSubProfileAssociators(String keyValue, Text assocClass,
                                                                Text resultClass, Text, Text, bool,
                                                                bool, const CIMPropertyList&,
                                                                ObjectHandler& handler,
                                                                const String& nameSpace) {
    trace(" Quil regSubProfAssociators(): assoc class is ", assocClass);
    deliverFarEnds({*this, nameSpace}, keyValue, selected::by(assocClass), resultClass, handler);
}

void ServerProfileProvider::_getRegisteredSubProfileReferenceNames(String keyValue,
                                                                   Text resultClass, Text,
                                                                   PathHandler& handler,
                                                                   const String& nameSpace) {
    trace(" Quil regSubProfRefNames(): result class is ", resultClass);
    deliverAssociations({*this, nameSpace}, referenceNamesTexts, keyValue,
                        selected::by(resultClass), handler);
}

void ServerProfileProvider::_getRegisteredSubProfileReferences(String keyValue, Text resultClass,
                                                               Text, bool, bool,
                                                               const CIMPropertyList&,
                                                               ObjectHandler& handler,
                                                               const String& nameSpace) {
    trace(" Quil regSubProfReferences(): result class is ", resultClass);
    deliverAssociations({*this, nameSpace}, referencesTexts, keyValue, selected::by(resultClass),
                        handler);
}
