// Reads values of a request. All functions throw Pegasus::CIMException CIM_ERR_INVALID_PARAMETER
// for a text that is no value of its type; the message quotes it.
#pragma once

#include "cimxml/Paths.h"

#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>

#include <string_view>

namespace embedded::cimxml {

/// "TRUE" or "FALSE", in any case.
bool readBoolean(std::string_view text);
/// A number as a key value spells it: an integer (decimal or hexadecimal) or a real, without the
/// blanks around it.
Pegasus::String readNumberText(std::string_view text);

/// The value in the VALUE, VALUE.ARRAY or VALUE.REFERENCE among the children of `holder` (null of
/// `type` when there is none), of which DSP0203 lets it have at most one. `isArray` is what
/// `holder` declares. A VALUE.NULL in an array is CIM_ERR_NOT_SUPPORTED: our arrays have no null
/// elements.
Pegasus::CIMValue readValue(const Element& holder, Pegasus::CIMType type, bool isArray,
                            const SoleKey& soleKey);

} // namespace embedded::cimxml
