// What ties the entries of the profile catalogue to each other and to the elements that conform to
// them: the tables, the associations made from them, and what a traversal from an entry begins
// with.
#pragma once

#include "common/OwnObjects.h"
#include "common/Selection.h"

namespace serverprofile {

/// A registered profile and a subprofile that requires it, as positions in the catalogue.
struct SubProfilePair {
    Pegasus::Uint32 profile;
    Pegasus::Uint32 subProfile;
};
constexpr SubProfilePair subProfilePairs[] = {
    {0, 0}, // Fabric: Zone Control
    {0, 1}, // Fabric: Enhanced Zoning and Enhanced Zoning Control
    {1, 2}, // Switch: Blades
};

/// A class of managed elements that conform to a registered profile.
struct ConformanceRow {
    const char* elementClass;
    Pegasus::Uint32 profile; ///< position in the catalogue
    const char* failure;     ///< traced when the elements' names cannot be read
};
constexpr ConformanceRow conformance[] = {
    {"ORVEX_Vsan", 0, " Quil ni for ORVEX_AdminDomain exception "}, // the other name: on purpose
    {"ORVEX_ComputerSystem", 1, " Quil ni for ORVEX_ComputerSystem exception "},
    {"CIM_ObjectManager", 2, " Quil ni for CIM_ObjectManager "},
};

/// Delivers CIM_SubProfileRequiresProfile for each pair for which wanted(pair) holds, in the order
/// of the table.
template <class Handler, class Wanted>
void deliverRequirements(Handler& handler, const Request& request, Wanted wanted) {
    Association requirement(subProfileRequiresProfile, request.nameSpace);
    for (const SubProfilePair& pair : subProfilePairs) {
        if (wanted(pair)) {
            requirement.from(entryPath(request, profileEntries, pair.profile));
            deliver(handler,
                    requirement.to(entryPath(request, subProfileEntries, pair.subProfile)));
        }
    }
}

/// The names of a row's elements, and the association of each of them, yet to be named.
struct Conformance {
    Pegasus::Array<Pegasus::CIMObjectPath> elements;
    Association association;
};

/// Reads the row's elements from the server, none (and a trace) when they cannot be read, and then
/// builds the path of its profile.
Conformance readConformance(const Request& request, const ConformanceRow& row);

/// Delivers CIM_ElementConformsToProfile for each element of the row.
template <class Handler>
void deliverConformance(Handler& handler, Conformance row) {
    for (Pegasus::Uint32 i = 0; i < row.elements.size(); ++i)
        deliver(handler, row.association.to(row.elements[i]));
}

/// The association classes that a registered profile or subprofile can be asked about, as bits.
namespace selected {

constexpr int subProfiles = 1;
constexpr int referencedProfiles = 2;
constexpr int conformingElements = 4;
constexpr int softwareIdentity = 8;
constexpr int all = 15;

constexpr SelectionRow rows[] = {
    {"CIM_SubProfileRequiresProfile", subProfiles},
    {"CIM_ReferencedProfile", referencedProfiles},
    {"CIM_ElementConformsToProfile", conformingElements},
    {"ORVEX_ElementSoftwareIdentity", softwareIdentity},
};

/// The bits that `filter` selects, traced when there are any.
inline int by(const char* filter) { return selectTraced(rows, filter, all); }

} // namespace selected

/// The position of the source with that InstanceID in its half of the catalogue, or -1.
Pegasus::Sint32 sourceIndex(const Request& request, const CatalogueHalf& half,
                            const Pegasus::String& keyValue);

} // namespace serverprofile
