// Object paths out of a request.
#pragma once

#include "cimxml/Document.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <functional>

namespace embedded::cimxml {

/// Tells the name of the one key of a class; for an INSTANCENAME that gives a key value without
/// its name. Throws Pegasus::CIMException when the class is unknown or has not exactly one key.
using SoleKey = std::function<Pegasus::CIMName(const Pegasus::CIMName& className)>;

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
