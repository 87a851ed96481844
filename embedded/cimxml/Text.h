// Characters on their way into a document.
#pragma once

#include "hosting/Text.h"

#include <Pegasus/Common/String.h>

#include <string>
#include <string_view>

namespace embedded::cimxml {

/// `text` in UTF-8. What no XML document can hold (a lone surrogate, U+FFFE, U+FFFF) becomes
/// U+FFFD.
std::string toUtf8(const Pegasus::String& text);

using Pegasus::hosting::fromUtf8;

/// Appends `text` so that it reads back as it is, as element content and as attribute value.
/// Blanks that a reader might take for layout (first, last, after a blank) and control characters
/// are written as character references. Those below U+0020 but for tab, CR and LF are not XML 1.0
/// even so; clients of such servers know them in this form.
void appendEscaped(std::string& out, std::string_view text);
void appendEscaped(std::string& out, const Pegasus::String& text);

/// Appends ` name="value"`.
void appendAttribute(std::string& out, std::string_view name, const Pegasus::String& value);

} // namespace embedded::cimxml
