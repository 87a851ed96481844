// Which elements a CIM-XML request may hold, with which attributes and in which order (DSP0203).
#pragma once

#include "cimxml/Document.h"

namespace embedded::cimxml {

/// Throws RequestRejected request-not-valid when `element` or anything in it is not as DSP0203
/// declares it: unknown element or attribute, a missing attribute, children that the content
/// model does not allow, text where none may be. Attributes of XML itself ("xml:lang", "xmlns")
/// are let pass.
void checkElement(const Element& element);

/// `name` as the rules have it, which lives for ever; "" if there is no element of that name.
std::string_view knownElement(std::string_view name);

} // namespace embedded::cimxml
