// Object paths out of a request.
#pragma once

#include <Pegasus/Common/CIMObjectPath.h>

#include <pugixml.hpp>

#include <functional>

namespace embedded::cimxml {

/// Tells the name of the one key of a class; for an INSTANCENAME that gives a key value without
/// its name. Throws Pegasus::CIMException when the class is unknown or has not exactly one key.
using SoleKey = std::function<Pegasus::CIMName(const Pegasus::CIMName& className)>;

/// How deep references may be nested in the keys of references. Each level doubles the quoting of
/// the levels within, so this also bounds what a small request can blow up to.
constexpr unsigned maximumReferenceDepth = 4;

// Both throw RequestRejected for an illegal name, and Pegasus::CIMException
// CIM_ERR_INVALID_PARAMETER for an illegal key value or host or too deep a reference.

/// The path of an INSTANCENAME: class and keys.
Pegasus::CIMObjectPath
readInstanceName(const pugi::xml_node& instanceName, const SoleKey& soleKey, unsigned depth = 0);
/// The path in a VALUE.REFERENCE, of whichever form; a class's path has no keys.
Pegasus::CIMObjectPath
readReference(const pugi::xml_node& reference, const SoleKey& soleKey, unsigned depth = 0);

} // namespace embedded::cimxml
