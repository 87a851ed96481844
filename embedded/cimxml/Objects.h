// Reads names, values, paths and instances of a request.
#pragma once

#include "cimxml/Document.h"

#include <Pegasus/Common/CIMInstance.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace embedded::cimxml {

/// A CIM-XML request with a part that has no meaning: CIM_ERR_INVALID_PARAMETER.
[[noreturn]] void throwInvalid(const std::string& message);

// Names in attributes. An illegal one makes the document invalid: RequestRejected.

/// The name in `attribute`, which is there.
Pegasus::CIMName readName(const Attribute& attribute);
/// The namespace of a LOCALNAMESPACEPATH.
Pegasus::CIMNamespaceName readNamespace(const Element& localNamespacePath);

// Values, paths and instances: also, Pegasus::CIMException CIM_ERR_INVALID_PARAMETER for a text
// that is no value of its type, which the message quotes, for an illegal host, for a property or
// qualifier that is given twice, and for more than the limits allow.

/// An unsigned integer of 32 bits in decimal digits, all of `text`; none if it is anything else.
std::optional<Pegasus::Uint32> readUint32(std::string_view text);
/// "TRUE" or "FALSE", in any case.
bool readBoolean(std::string_view text);

/// Returns the name of the only key of a class, for an INSTANCENAME with a key value without a
/// name. Throws Pegasus::CIMException unless the class is known and has exactly one key.
using SoleKey = std::function<Pegasus::CIMName(const Pegasus::CIMName& className)>;

/// The value in the VALUE, VALUE.ARRAY or VALUE.REFERENCE among the children of `holder` (null of
/// `type` when there is none), of which DSP0203 lets it have at most one. `isArray` is what
/// `holder` declares. A VALUE.NULL in an array is CIM_ERR_NOT_SUPPORTED: our arrays have no null
/// elements. REQUIRES: `type` is that of a reference, or of DSP0203's CIMType.
Pegasus::CIMValue readValue(const Element& holder, Pegasus::CIMType type, bool isArray,
                            const SoleKey& soleKey);
/// The path of an INSTANCENAME: class and keys.
Pegasus::CIMObjectPath readInstanceName(const Element& instanceName, const SoleKey& soleKey,
                                        unsigned depth = 0);
/// The instance of an INSTANCE; its path is its class name. An embedded object stays the string
/// that it is on the wire.
Pegasus::CIMInstance readInstance(const Element& instance, const SoleKey& soleKey);
/// The instance of a VALUE.NAMEDINSTANCE, with its path.
Pegasus::CIMInstance readNamedInstance(const Element& namedInstance, const SoleKey& soleKey);

} // namespace embedded::cimxml
