#include "repository/Integers.h"

#include <charconv>
#include <string_view>

namespace embedded::repository {

namespace {

struct Notation {
    std::string_view digits;
    int base = 10;
};

bool endsInB(std::string_view text) {
    return text.size() > 1 && (text.back() == 'b' || text.back() == 'B');
}

Notation notationOf(std::string_view text) {
    // Hexadecimal first: its last digit may well be a b.
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        return {text.substr(2), 16};
    if (endsInB(text))
        return {text.substr(0, text.size() - 1), 2};
    if (text.size() > 1 && text[0] == '0')
        return {text.substr(1), 8};
    return {text, 10};
}

} // namespace

std::optional<Integer> parseInteger(const std::string& digits) {
    std::string_view text = digits;
    Integer result;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        result.negative = text.front() == '-';
        text.remove_prefix(1);
    }
    const Notation notation = notationOf(text);
    const char* end = notation.digits.data() + notation.digits.size();
    const auto [stopped, error] =
        std::from_chars(notation.digits.data(), end, result.magnitude, notation.base);
    if (error != std::errc() || stopped != end)
        return std::nullopt;
    return result;
}

} // namespace embedded::repository
