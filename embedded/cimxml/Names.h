// Reads names and types in attributes. An illegal one makes the document invalid.
#pragma once

#include "cimxml/Document.h"

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>

#include <optional>
#include <string_view>

namespace embedded::cimxml {

/// The name in `attribute`, which is there. Throws RequestRejected for an illegal one.
Pegasus::CIMName readName(const Attribute& attribute);
/// Null when there is no such attribute.
Pegasus::CIMName readOptionalName(const Attribute& attribute);
/// A type of DSP0203's CIMType (no reference, no embedded object).
Pegasus::CIMType readType(const Attribute& attribute);
/// "true" or "false", in any case; `absent` when there is no such attribute.
bool readFlag(const Attribute& attribute, bool absent);
/// An unsigned integer of 32 bits in decimal digits, all of `text`; none if it is anything else.
std::optional<Pegasus::Uint32> readUint32(std::string_view text);
/// The namespace of a LOCALNAMESPACEPATH.
Pegasus::CIMNamespaceName readNamespace(const Element& localNamespacePath);

} // namespace embedded::cimxml
