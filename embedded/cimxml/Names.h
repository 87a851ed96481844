// Names and types out of attributes. An illegal one makes the document invalid.
#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>

#include <pugixml.hpp>

namespace embedded::cimxml {

/// The name in `attribute`, which is there. Throws RequestRejected for an illegal one.
Pegasus::CIMName readName(const pugi::xml_attribute& attribute);
/// Null when there is no such attribute.
Pegasus::CIMName readOptionalName(const pugi::xml_attribute& attribute);
/// A type of DSP0203's CIMType (no reference, no embedded object).
Pegasus::CIMType readType(const pugi::xml_attribute& attribute);
/// "true" or "false", in any case; `absent` when there is no such attribute.
bool readFlag(const pugi::xml_attribute& attribute, bool absent);
/// The namespace of a LOCALNAMESPACEPATH.
Pegasus::CIMNamespaceName readNamespace(const pugi::xml_node& localNamespacePath);

} // namespace embedded::cimxml
