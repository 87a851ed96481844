// What reading MOF needs to know of characters. UTF-8 is as RFC 3629 defines it: no overlong
// forms, no surrogates, nothing above U+10FFFF.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace embedded::mof {

/// The offset of the first byte that begins no whole, valid character; npos when there is none.
std::size_t findInvalidUtf8(std::string_view text);

/// The number of characters of `text`, which must be valid.
std::size_t countCharacters(std::string_view text);

/// Appends `character`, which must be a Unicode scalar value.
void appendUtf8(std::string& out, char32_t character);

/// `text` with the ASCII letters in lower case, whatever the locale.
std::string toLower(std::string_view text);

} // namespace embedded::mof
