// The objects that cimhost publishes of itself: its object manager, its communication mechanisms
// and its namespaces. Their provider module is like any other, but part of the program.
#pragma once

#include "cimhost/CommandLine.h"
#include "repository/View.h"
#include "routing/ProviderModule.h"
#include "routing/Registration.h"

#include <cstdint>
#include <vector>

namespace embedded::cimhost {

/// Registers the module in the namespaces that define its classes, unless another module or loaded
/// instances provide them.
void registerOwnObjects(const repository::View& view, routing::Registration& registration);

/// Adds the module to those that are part of the program. `ports` are the listening ports: for
/// HTTP, unless the settings leave it out, then for HTTPS, if they ask for it.
void linkOwnObjects(const Settings& settings, const repository::View& view,
                    const std::vector<std::uint16_t>& ports, routing::ModuleSettings& modules);

} // namespace embedded::cimhost
