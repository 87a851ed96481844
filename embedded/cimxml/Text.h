// Characters on their way into and out of a document, by the names that this room calls it.
#pragma once

#include "hosting/Text.h"
#include "hosting/XmlWriter.h"
#include "text/Ascii.h"

namespace embedded::cimxml {

using Pegasus::hosting::appendAttribute;
using Pegasus::hosting::appendEscaped;
using Pegasus::hosting::fromUtf8;
using text::equalIgnoringCase;

inline std::string toUtf8(const Pegasus::String& text) {
    return Pegasus::hosting::utf8(text);
}

} // namespace embedded::cimxml
