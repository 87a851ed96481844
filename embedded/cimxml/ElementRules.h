// Which elements a CIM-XML request may hold, with which attributes and in which order (DSP0203).
#pragma once

#include "cimxml/Document.h"

namespace embedded::cimxml {

/// Throws RequestRejected request-not-valid unless `element` and everything in it are as DSP0203
/// declares them: no unknown elements or attributes, no missing attributes, no children that the
/// content model does not allow, no text where none may be. Attributes of XML itself ("xml:lang",
/// "xmlns") are allowed.
void checkElement(const Element& element);

/// `name` as a text of the rules, which is never destroyed; "" if there is no such element.
std::string_view knownElement(std::string_view name);

} // namespace embedded::cimxml
