#include "Numbers.h"

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

bool parse(const Char16* at, const Char16* end, Uint64& value) {
    Uint32 base = 10;
    if (end - at > 1 && at[0] == '0') {
        if (embedded::text::lower(at[1]) != 'x')
            return false;
        base = 16;
        at += 2;
    }
    if (at == end)
        return false;
    value = 0;
    for (; at != end; ++at) {
        const Uint32 next = digit(*at);
        if (next >= base || value > (std::numeric_limits<Uint64>::max() - next) / base)
            return false;
        value = value * base + next;
    }
    return true;
}

} // namespace

bool parse(const String& text, Uint64& value) {
    const Char16* const begin = text.getChar16Data();
    return parse(begin, begin + text.size(), value);
}

bool parse(const String& text, Sint64& value) {
    const Char16* const begin = text.getChar16Data();
    const Char16* const end = begin + text.size();
    const bool negative = begin != end && *begin == '-';
    const bool hasSign = negative || (begin != end && *begin == '+');
    Uint64 magnitude = 0;
    if (!parse(hasSign ? begin + 1 : begin, end, magnitude))
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
