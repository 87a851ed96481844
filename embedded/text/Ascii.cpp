#include "text/Ascii.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace embedded::text {

std::size_t asciiPrefix(std::string_view text) noexcept {
    std::size_t at = 0;
    for (std::uint64_t word = 0; at + sizeof word <= text.size(); at += sizeof word) {
        std::memcpy(&word, text.data() + at, sizeof word);
        if ((word & 0x8080808080808080U) != 0)
            break;
    }
    while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80)
        ++at;
    return at;
}

bool equalIgnoringCase(std::string_view left, std::string_view right) noexcept {
    return left.size() == right.size() &&
           std::equal(
               left.begin(), left.end(), right.begin(),
               [](char a, char b) { return a == b || lower(a) == lower(b); });
}

std::string lowered(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), lower<char>);
    return out;
}

std::string_view trimmed(std::string_view text) noexcept {
    constexpr const char* blanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos
               ? std::string_view()
               : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

} // namespace embedded::text
