#include "cimxml/Text.h"

#include <algorithm>

namespace embedded::cimxml {
namespace {

constexpr char32_t replacement = 0xFFFD;

void appendUtf8(std::string& out, char32_t c) {
    const auto tail = [&](unsigned shift) {
        out += static_cast<char>(0x80U | ((c >> shift) & 0x3FU));
    };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0U | (c >> 6));
        tail(0);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0U | (c >> 12));
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0U | (c >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

bool isHighSurrogate(char32_t c) {
    return c >= 0xD800 && c < 0xDC00;
}

bool isLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c < 0xE000;
}

char32_t codeUnit(const Pegasus::String& text, Pegasus::Uint32 index) {
    return static_cast<Pegasus::Uint16>(text[index]);
}

} // namespace

std::string toUtf8(const Pegasus::String& text) {
    std::string out;
    out.reserve(text.size());
    for (Pegasus::Uint32 i = 0; i < text.size(); ++i) {
        char32_t c = codeUnit(text, i);
        if (isHighSurrogate(c) && i + 1 < text.size() && isLowSurrogate(codeUnit(text, i + 1))) {
            c = 0x10000 + ((c - 0xD800) << 10) + (codeUnit(text, ++i) - 0xDC00);
        } else if (isHighSurrogate(c) || isLowSurrogate(c) || c == 0xFFFE || c == 0xFFFF) {
            c = replacement;
        }
        appendUtf8(out, c);
    }
    return out;
}

Pegasus::String fromUtf8(std::string_view text) {
    return text.empty() // whose data() may be null, which String does not take
               ? Pegasus::String()
               : Pegasus::String(text.data(), static_cast<Pegasus::Uint32>(text.size()));
}

bool equalNoCase(std::string_view left, std::string_view right) {
    const auto lower = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(),
                      [&](char x, char y) { return lower(x) == lower(y); });
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
