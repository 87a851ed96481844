// Letters and digits of names and numbers, whatever the locale. Other characters have no case.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace embedded::text {

// Of a byte of UTF-8 or a code unit of UTF-16.

template <class Unit>
constexpr bool isUpper(Unit unit) noexcept {
    return unit >= 'A' && unit <= 'Z';
}

template <class Unit>
constexpr bool isLower(Unit unit) noexcept {
    return unit >= 'a' && unit <= 'z';
}

template <class Unit>
constexpr bool isLetter(Unit unit) noexcept {
    return isUpper(unit) || isLower(unit);
}

template <class Unit>
constexpr bool isDigit(Unit unit) noexcept {
    return unit >= '0' && unit <= '9';
}

template <class Unit>
constexpr Unit lower(Unit unit) noexcept {
    return isUpper(unit) ? static_cast<Unit>(unit - 'A' + 'a') : unit;
}

template <class Unit>
constexpr Unit upper(Unit unit) noexcept {
    return isLower(unit) ? static_cast<Unit>(unit - 'a' + 'A') : unit;
}

/// The number of ASCII characters before the first other one.
std::size_t asciiPrefix(std::string_view text) noexcept;

bool equalIgnoringCase(std::string_view left, std::string_view right) noexcept;

/// `text` with its letters in lower case: the form in which to look up what has no case.
std::string lowered(std::string_view text);

/// `text` without the blanks (space, tab, CR, LF) at its ends.
std::string_view trimmed(std::string_view text) noexcept;

} // namespace embedded::text
