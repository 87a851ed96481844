// The association classes that a registered profile or subprofile can be asked about.
#pragma once

#include "provider/Selection.h"

namespace serverprofile::profileselection {

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
inline int by(const char* filter) {
    return selectTraced(rows, filter, all);
}

} // namespace serverprofile::profileselection
