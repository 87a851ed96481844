// The objects that cimhost publishes of itself: its object manager, how it is reached, and its
// namespaces. A provider module like any other answers for them, but one that is part of the
// program.
#pragma once

#include "cimhost/CommandLine.h"
#include "repository/View.h"
#include "routing/ProviderModule.h"
#include "routing/Registration.h"

#include <cstdint>
#include <vector>

namespace embedded::cimhost {

/// Registers the module where the classes are, unless another one, or what was loaded, has them.
void registerOwnObjects(const repository::View& view, routing::Registration& registration);

/// Adds the module to those that are part of the program. `ports` are those that are listened on:
/// for HTTP, unless the settings leave it out, then for HTTPS, if they ask for it.
void linkOwnObjects(const Settings& settings, const repository::View& view,
                    const std::vector<std::uint16_t>& ports, routing::ModuleSettings& modules);

} // namespace embedded::cimhost
