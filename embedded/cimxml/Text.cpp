#include "cimxml/Text.h"

#include "text/Utf8.h"

namespace embedded::cimxml {
namespace {

constexpr char32_t replacement = 0xFFFD;

} // namespace

std::string toUtf8(const Pegasus::String& text) {
    std::string out;
    out.reserve(text.size());
    const Pegasus::Char16* at = text.getChar16Data();
    for (const Pegasus::Char16* const end = at + text.size(); at != end;) {
        const char32_t c = text::takeCharacter(at, end);
        const bool isSurrogate = text::isHighSurrogate(c) || text::isLowSurrogate(c);
        text::appendUtf8(out, isSurrogate || c == 0xFFFE || c == 0xFFFF ? replacement : c);
    }
    return out;
}

void appendEscaped(std::string& out, std::string_view text) {
    bool afterPlainBlank = true; // so that a first blank is escaped
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool plainBlank = c == ' ' && !afterPlainBlank && i + 1 < text.size();
        switch (c) {
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '&':
            out += "&amp;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\'':
            out += "&apos;";
            break;
        default:
            if (const auto code = static_cast<unsigned char>(c);
                code < 0x20 || code == 0x7F || (c == ' ' && !plainBlank)) {
                out += "&#" + std::to_string(code) + ';';
            } else {
                out += c;
            }
        }
        afterPlainBlank = plainBlank;
    }
}

void appendEscaped(std::string& out, const Pegasus::String& text) {
    appendEscaped(out, std::string_view(toUtf8(text)));
}

void appendAttribute(std::string& out, std::string_view name, const Pegasus::String& value) {
    out += ' ';
    out += name;
    out += "=\"";
    appendEscaped(out, value);
    out += '"';
}

} // namespace embedded::cimxml
