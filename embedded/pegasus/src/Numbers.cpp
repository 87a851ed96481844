#include "ObjectPathReps.h"
#include "embedding/Text.h"
#include "text/Ascii.h"

#include <charconv>
#include <limits>

namespace Pegasus::numbers {

namespace {

bool parseDigits(std::string_view digits, Uint64& value) {
    int base = 10;
    if (digits.size() > 1 && digits[0] == '0') {
        if (embedded::text::lower(digits[1]) != 'x')
            return false;
        base = 16;
        digits.remove_prefix(2);
    }
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
    return error == std::errc() && stop == end;
}

} // namespace

bool parse(const String& text, Uint64& value) { return parseDigits(embedding::utf8(text), value); }

bool parse(const String& text, Sint64& value) {
    const std::string number = embedding::utf8(text);
    const bool negative = number[0] == '-'; // a closing 0 is always there
    std::string_view digits = number;
    if (negative || number[0] == '+')
        digits.remove_prefix(1);
    Uint64 magnitude = 0;
    const Uint64 largest = std::numeric_limits<Sint64>::max();
    if (!parseDigits(digits, magnitude) || magnitude > largest + (negative ? 1 : 0))
        return false;
    value = static_cast<Sint64>(negative ? 0 - magnitude : magnitude);
    return true;
}

String canonical(const String& text) {
    Sint64 signedValue = 0;
    if (parse(text, signedValue))
        return String(std::to_string(signedValue).c_str());
    Uint64 value = 0;
    return parse(text, value) ? String(std::to_string(value).c_str()) : text;
}

} // namespace Pegasus::numbers
