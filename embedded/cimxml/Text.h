// Characters on their way into and out of a document, by the names that this room calls it.
#pragma once

#include "embedding/Text.h"
#include "embedding/XmlWriter.h"
#include "text/Ascii.h"

namespace embedded::cimxml {

using Pegasus::embedding::appendAttribute;
using Pegasus::embedding::appendEscaped;
using Pegasus::embedding::fromUtf8;
using text::equalIgnoringCase;

inline std::string toUtf8(const Pegasus::String& text) {
    return Pegasus::embedding::utf8(text);
}

} // namespace embedded::cimxml
