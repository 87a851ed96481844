// Object paths out of a request.
#pragma once

#include "cimxml/Document.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <functional>

namespace embedded::cimxml {

/// Tells the name of the one key of a class; for an INSTANCENAME that gives a key value without
/// its name. Throws Pegasus::CIMException when the class is unknown or has not exactly one key.
using SoleKey = std::function<Pegasus::CIMName(const Pegasus::CIMName& className)>;

// A request may be large, but what it costs must not grow beyond its size: an object of many
// members is copied where one of them changes, and a reference within a key is quoted again at each
// level.

/// How many properties and qualifiers an element may have, or keys a path.
constexpr std::size_t maximumMembers = 1000;
/// How deep references may be nested in the keys of references.
constexpr unsigned maximumReferenceDepth = 3;
/// How many characters a reference within a key may come to.
constexpr Pegasus::Uint32 maximumReferenceLength = 16384;

/// Throws Pegasus::CIMException CIM_ERR_INVALID_PARAMETER when `element` has too many children.
void checkMembers(const Element& element);

// Both throw RequestRejected for an illegal name, and Pegasus::CIMException
// CIM_ERR_INVALID_PARAMETER for an illegal key value or host, or for more than the limits allow.

/// The path of an INSTANCENAME: class and keys.
Pegasus::CIMObjectPath readInstanceName(const Element& instanceName, const SoleKey& soleKey,
                                        unsigned depth = 0);
/// The path in a VALUE.REFERENCE, of whichever form; a class's path has no keys.
Pegasus::CIMObjectPath readReference(const Element& reference, const SoleKey& soleKey,
                                     unsigned depth = 0);

} // namespace embedded::cimxml
