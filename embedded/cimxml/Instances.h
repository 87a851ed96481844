// Reads instances of a request. Errors are as in Values.h; a property or qualifier that is given
// twice is CIM_ERR_INVALID_PARAMETER, too.
#pragma once

#include "cimxml/Paths.h"

#include <Pegasus/Common/CIMInstance.h>

namespace embedded::cimxml {

/// The instance of an INSTANCE; its path is its class name. An embedded object stays the string
/// that it is on the wire.
Pegasus::CIMInstance readInstance(const Element& instance, const SoleKey& soleKey);
/// The instance of a VALUE.NAMEDINSTANCE, with its path.
Pegasus::CIMInstance readNamedInstance(const Element& namedInstance, const SoleKey& soleKey);

} // namespace embedded::cimxml
