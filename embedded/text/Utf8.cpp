#include "text/Utf8.h"

#include "text/Ascii.h"

#include <utf8cpp/utf8.h>

#include <algorithm>
#include <iterator>

namespace embedded::text {

namespace {

/// The three bytes that a surrogate takes, at the start of `text`; 0 when they are not there.
char16_t surrogateAt(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    if (text.size() < 3 || byte(0) != 0xED || (byte(1) & 0xE0U) != 0xA0 ||
        (byte(2) & 0xC0U) != 0x80)
        return 0;
    return static_cast<char16_t>(0xD000U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU));
}

void appendEscaped(std::string& out, char c) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    out += "\\x";
    out += digits[byte >> 4U];
    out += digits[byte & 0xFU];
}

} // namespace

std::size_t findInvalidUtf8(std::string_view text) {
    const std::size_t ascii = asciiPrefix(text);
    const std::size_t found = utf8::find_invalid(text.substr(ascii));
    return found == std::string_view::npos ? found : ascii + found;
}

std::size_t countCharacters(std::string_view text) {
    return static_cast<std::size_t>(utf8::unchecked::distance(text.begin(), text.end()));
}

void appendUtf8(std::string& out, char32_t character) {
    utf8::unchecked::append(character, std::back_inserter(out));
}

std::size_t appendUtf16(std::u16string& units, std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view rest = text.substr(at);
        const std::size_t valid = std::min(findInvalidUtf8(rest), rest.size());
        utf8::unchecked::utf8to16(rest.begin(), rest.begin() + valid, std::back_inserter(units));
        at += valid;
        if (at == text.size())
            break;
        const char16_t surrogate = surrogateAt(rest.substr(valid));
        if (surrogate == 0)
            return at;
        units += surrogate;
        at += 3;
    }
    return std::string_view::npos;
}

std::string visible(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    std::size_t valid = 0; // up to where `text` is known to be so
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (at >= valid)
            valid = at + std::min(findInvalidUtf8(text.substr(at)), text.size() - at);
        const auto byte = static_cast<unsigned char>(text[at]);
        // U+0080 to U+009F are two bytes, of which the second is as large as the number.
        const bool isC1 =
            byte == 0xC2 && at + 1 < valid && static_cast<unsigned char>(text[at + 1]) < 0xA0;
        if (at < valid && byte >= 0x20 && byte != 0x7F && !isC1) {
            out += text[at];
            continue;
        }
        appendEscaped(out, text[at]);
        if (isC1)
            appendEscaped(out, text[++at]);
    }
    return out;
}

} // namespace embedded::text
