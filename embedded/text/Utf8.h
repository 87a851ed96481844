// UTF-8 (RFC 3629) in and out, and between it and UTF-16.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace embedded::text {

/// The offset of the first byte that begins no whole, valid character: overlong forms, surrogates
/// and what lies beyond U+10FFFF are not valid. npos when there is none.
std::size_t findInvalidUtf8(std::string_view text);

/// The number of characters of `text`, which must be valid.
std::size_t countCharacters(std::string_view text);

/// Appends `character`, up to U+10FFFF; a surrogate becomes the three bytes of its number.
void appendUtf8(std::string& out, char32_t character);

/// Appends the code units of `text` to `units`. A surrogate may come as three bytes. Stops at the
/// first byte that is not valid, and returns its offset, or npos.
std::size_t appendUtf16(std::u16string& units, std::string_view text);

/// `text` for a message of one line: control characters (C0, DEL, C1) and bytes that are no UTF-8
/// are written as \\xNN, byte by byte.
std::string visible(std::string_view text);

constexpr bool isHighSurrogate(char32_t unit) noexcept { return unit >= 0xD800 && unit < 0xDC00; }

constexpr bool isLowSurrogate(char32_t unit) noexcept { return unit >= 0xDC00 && unit < 0xE000; }

/// Takes one character off the code units from `at` on; a surrogate that stands alone is taken
/// as it is. REQUIRES: `at` != `end`.
template <class Unit>
char32_t takeCharacter(const Unit*& at, const Unit* end) noexcept {
    const char32_t first = *at++;
    if (!isHighSurrogate(first) || at == end || !isLowSurrogate(*at))
        return first;
    return 0x10000 + ((first - 0xD800) << 10U) + (char32_t{*at++} - 0xDC00);
}

} // namespace embedded::text
