// Describes what a server has and offers, in lines for the person who started it.
#pragma once

#include "embedding/Text.h"
#include "repository/View.h"
#include "routing/Registration.h"

#include <Pegasus/Common/CIMName.h>

#include <string>
#include <vector>

namespace embedded::cimhost {

using Pegasus::embedding::utf8;

/// A line for each namespace with its numbers of classes and instances, for each module with its
/// library, and for each provider with the classes, types and namespaces that it answers for.
std::vector<std::string> summary(const repository::View& view,
                                 const routing::Registration& registration,
                                 const Pegasus::CIMNamespaceName& interop);

} // namespace embedded::cimhost
