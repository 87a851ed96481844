// Checks whether the registered providers can work, to find out why nothing answers.
#pragma once

#include "repository/View.h"
#include "routing/Registration.h"

#include <filesystem>
#include <vector>

namespace embedded::routing {

/// A note for each capability that is routed; a problem for everything that keeps a registered
/// provider from being asked or from answering: what the registration left out, namespaces and
/// classes that are not defined, libraries that are not found, cannot be loaded, or lack the entry
/// point. Opens the libraries, but creates no provider.
std::vector<Finding> checkRegistration(const Registration& registration,
                                       const repository::View& view,
                                       const std::vector<std::filesystem::path>& directories);

} // namespace embedded::routing
