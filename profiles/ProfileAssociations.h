// What ties the entries of the profile catalogue to each other, to the elements that conform to
// them and to the firmware: the tables, and the associations made from them.
#pragma once

#include "provider/Association.h"
#include "provider/ServerProfileProvider.h"

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

// Paths for a request: they carry its namespace. Errors as buildRegisteredProfileReference.

Pegasus::CIMObjectPath profilePath(ServerProfileProvider& provider, Pegasus::Uint32 profile,
                                   const Pegasus::String& nameSpace);
Pegasus::CIMObjectPath subProfilePath(ServerProfileProvider& provider, Pegasus::Uint32 subProfile,
                                      const Pegasus::String& nameSpace);
/// In "root/cimv2" whatever the request's namespace.
Pegasus::CIMObjectPath softwareIdentityPath(ServerProfileProvider& provider,
                                            const Pegasus::String& nameSpace);

/// CIM_ElementConformsToProfile between `profile` and an element yet to be named, one of
/// `elementClass`.
Association conforming(const Pegasus::String& nameSpace, const Pegasus::CIMObjectPath& profile,
                       const char* elementClass);
/// ORVEX_ElementSoftwareIdentity between the firmware and an element yet to be named.
Association implementedBy(ServerProfileProvider& provider, const Pegasus::String& nameSpace);

/// Delivers CIM_SubProfileRequiresProfile for each pair for which wanted(pair) holds, in the order
/// of the table.
template <class Handler, class Wanted>
void deliverRequirements(Handler& handler, ServerProfileProvider& provider,
                         const Pegasus::String& nameSpace, Wanted wanted) {
    Association requirement(subProfileRequiresProfile, nameSpace);
    for (const SubProfilePair& pair : subProfilePairs) {
        if (wanted(pair)) {
            requirement.from(profilePath(provider, pair.profile, nameSpace));
            deliver(handler, requirement.to(subProfilePath(provider, pair.subProfile, nameSpace)));
        }
    }
}

/// The names of a row's elements, and the path of the profile to which they conform.
struct Conformance {
    const char* elementClass;
    Pegasus::Array<Pegasus::CIMObjectPath> elements;
    Pegasus::CIMObjectPath profile;
};

/// Reads the row's elements from the server, none (and a trace) when they cannot be read, and then
/// builds the path of its profile.
Conformance readConformance(ServerProfileProvider& provider, const ConformanceRow& row,
                            const Pegasus::String& nameSpace);

/// Delivers CIM_ElementConformsToProfile for each element of the row.
template <class Handler>
void deliverConformance(Handler& handler, const Conformance& row,
                        const Pegasus::String& nameSpace) {
    Association association = conforming(nameSpace, row.profile, row.elementClass);
    for (Pegasus::Uint32 i = 0; i < row.elements.size(); ++i)
        deliver(handler, association.to(row.elements[i]));
}

/// Calls visit(association) for each ORVEX_ElementSoftwareIdentity: all registered profiles, then
/// all subprofiles, each in the order of the catalogue.
template <class Visit>
void forEachImplemented(ServerProfileProvider& provider, const Pegasus::String& nameSpace,
                        Visit visit) {
    Association association = implementedBy(provider, nameSpace);
    association.secondIs(Pegasus::CIMName("CIM_RegisteredProfile"));
    for (Pegasus::Uint32 i = 0; i < provider.registeredProfiles().size(); ++i)
        visit(association.to(profilePath(provider, i, nameSpace)));
    association.secondIs(Pegasus::CIMName("CIM_RegisteredSubProfile"));
    for (Pegasus::Uint32 i = 0; i < provider.registeredSubProfiles().size(); ++i)
        visit(association.to(subProfilePath(provider, i, nameSpace)));
}

} // namespace serverprofile
