// MOF's integer constants (DSP0004 annex A): decimal, 0x hexadecimal, 0 octal and binary with b.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>

namespace embedded::repository {

struct Integer {
    bool negative = false;
    std::uint64_t magnitude = 0;
};

/// None if `digits` is not an integer constant or its magnitude needs more than 64 bits.
std::optional<Integer> parseInteger(const std::string& digits);

/// `value` as a T; none if it does not fit.
template <class T>
std::optional<T> narrowed(const Integer& value) {
    static_assert(std::is_integral_v<T>);
    const auto highest = static_cast<std::uint64_t>(std::numeric_limits<T>::max());
    if (!value.negative || value.magnitude == 0)
        return value.magnitude <= highest ? std::optional<T>(static_cast<T>(value.magnitude))
                                          : std::nullopt;
    if (std::is_unsigned_v<T> || value.magnitude > highest + 1)
        return std::nullopt;
    // In two steps, since the magnitude of the lowest value is no T.
    return static_cast<T>(-static_cast<std::int64_t>(value.magnitude - 1) - 1);
}

} // namespace embedded::repository
