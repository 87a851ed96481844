// Letters and digits of names and numbers, whatever the locale. Other characters have no case.
#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus::ascii {

constexpr bool isUpper(Uint16 unit) noexcept {
    return unit >= 'A' && unit <= 'Z';
}

constexpr bool isLower(Uint16 unit) noexcept {
    return unit >= 'a' && unit <= 'z';
}

constexpr bool isLetter(Uint16 unit) noexcept {
    return isUpper(unit) || isLower(unit);
}

constexpr bool isDigit(Uint16 unit) noexcept {
    return unit >= '0' && unit <= '9';
}

constexpr Uint16 lower(Uint16 unit) noexcept {
    return isUpper(unit) ? static_cast<Uint16>(unit - 'A' + 'a') : unit;
}

constexpr Uint16 upper(Uint16 unit) noexcept {
    return isLower(unit) ? static_cast<Uint16>(unit - 'a' + 'A') : unit;
}

} // namespace Pegasus::ascii
