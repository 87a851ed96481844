#include "Numbers.h"

#include "StringRep.h"
#include "text/Ascii.h"

#include <limits>

namespace Pegasus::numbers {

namespace {

constexpr Uint32 noDigit = 16;

Uint32 digit(Uint16 unit) {
    const Uint16 lower = embedded::text::lower(unit);
    if (embedded::text::isDigit(lower))
        return lower - Uint32{'0'};
    return lower >= 'a' && lower <= 'f' ? lower - Uint32{'a'} + 10 : noDigit;
}

template <class Unit>
bool parseUnits(const Unit* at, const Unit* end, Uint64& value) {
    Uint32 base = 10;
    if (end - at > 1 && unitOf(at[0]) == '0') {
        if (embedded::text::lower(unitOf(at[1])) != 'x')
            return false;
        base = 16;
        at += 2;
    }
    if (at == end)
        return false;
    value = 0;
    for (; at != end; ++at) {
        const Uint32 next = digit(unitOf(*at));
        if (next >= base || value > (std::numeric_limits<Uint64>::max() - next) / base)
            return false;
        value = value * base + next;
    }
    return true;
}

} // namespace

bool parse(const String& text, Uint64& value) {
    return StringRep::visit(
        text,
        [&](const auto* units, Uint32 size) { return parseUnits(units, units + size, value); });
}

bool parse(const String& text, Sint64& value) {
    const bool negative = text[0] == '-'; // a closing 0 is always there
    const bool hasSign = negative || text[0] == '+';
    Uint64 magnitude = 0;
    if (!StringRep::visit(text, [&](const auto* units, Uint32 size) {
            return parseUnits(units + (hasSign ? 1 : 0), units + size, magnitude);
        }))
        return false;
    const Uint64 largest = std::numeric_limits<Sint64>::max();
    if (magnitude > largest + (negative ? 1 : 0))
        return false;
    value = static_cast<Sint64>(negative ? 0 - magnitude : magnitude);
    return true;
}

String canonical(const String& text) {
    Sint64 signedValue = 0;
    if (parse(text, signedValue))
        return String(std::to_string(signedValue).c_str());
    Uint64 value = 0;
    if (parse(text, value))
        return String(std::to_string(value).c_str());
    return text;
}

} // namespace Pegasus::numbers
