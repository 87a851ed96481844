// Is it an XML document? pugixml builds a tree from much that is none; so that is decided here,
// over the bytes, before any tree is built.
#pragma once

#include <string>

namespace embedded::cimxml {

/// How deep elements may be nested. A request with a reference within a reference needs 16.
constexpr std::size_t maximumDepth = 32;
/// How many attributes an element may have. DSP0203 has none with more than ten.
constexpr std::size_t maximumAttributes = 16;

/// Throws RequestRejected unless `body` is a well-formed XML 1.0 document in UTF-8 that starts
/// with an XML declaration, within the limits above. A document type declaration may name a DTD
/// (it is not fetched) but must not declare anything itself, so the five predefined entities are
/// the only ones.
void checkWellFormed(const std::string& body);

} // namespace embedded::cimxml
