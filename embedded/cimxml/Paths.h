// Reads object paths of a request.
#pragma once

#include "cimxml/Document.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <functional>

namespace embedded::cimxml {

/// Returns the name of the only key of a class, for an INSTANCENAME with a key value without a
/// name. Throws Pegasus::CIMException unless the class is known and has exactly one key.
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
