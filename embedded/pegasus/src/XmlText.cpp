#include "hosting/XmlWriter.h"
#include "text/Utf8.h"

#include <array>
#include <charconv>

namespace Pegasus::hosting {

namespace {

/// Of ASCII: what does not always stand for itself.
constexpr bool isSpecial(unsigned char c) {
    return c <= ' ' || c == 0x7F || c == '<' || c == '>' || c == '&' || c == '"' || c == '\'';
}

constexpr std::array<bool, 256> specials = [] {
    std::array<bool, 256> table{};
    for (unsigned c = 0; c < table.size(); ++c)
        table[c] = isSpecial(static_cast<unsigned char>(c));
    return table;
}();

void appendReference(std::string& out, unsigned char c) {
    switch (c) {
    case '<':
        out += "&lt;";
        return;
    case '>':
        out += "&gt;";
        return;
    case '&':
        out += "&amp;";
        return;
    case '"':
        out += "&quot;";
        return;
    case '\'':
        out += "&apos;";
        return;
    default:
        char digits[3];
        const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, c);
        out.append("&#").append(digits, end.ptr) += ';';
    }
}

/// Tells blanks that may be written as they are from those that a reader might take for layout.
class Blanks {
  public:
    /// For each character in turn.
    bool isPlain(char32_t c, bool isLast) {
        return _afterPlainBlank = c == ' ' && !_afterPlainBlank && !isLast;
    }

  private:
    bool _afterPlainBlank = true; // so that a first blank is escaped
};

} // namespace

void appendEscaped(std::string& out, std::string_view text) {
    Blanks blanks;
    std::size_t run = 0; // where what may be copied as it is begins
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const bool isPlainBlank = blanks.isPlain(c, i + 1 == text.size());
        if (!specials[c] || isPlainBlank)
            continue;
        out.append(text, run, i - run);
        appendReference(out, c);
        run = i + 1;
    }
    out.append(text, run);
}

void appendEscaped(std::string& out, const String& text) {
    constexpr char32_t replacement = 0xFFFD;
    using namespace embedded::text;
    Blanks blanks;
    const Char16* at = text.getChar16Data();
    for (const Char16* const end = at + text.size(); at != end;) {
        const char32_t c = takeCharacter(at, end);
        const bool isPlainBlank = blanks.isPlain(c, at == end);
        if (c < 0x80 && specials[c] && !isPlainBlank)
            appendReference(out, static_cast<unsigned char>(c));
        else if (isHighSurrogate(c) || isLowSurrogate(c) || c == 0xFFFE || c == 0xFFFF)
            embedded::text::appendUtf8(out, replacement);
        else
            embedded::text::appendUtf8(out, c);
    }
}

void appendAttribute(std::string& out, std::string_view name, const String& value) {
    (out += ' ').append(name).append("=\"");
    appendEscaped(out, value);
    out += '"';
}

} // namespace Pegasus::hosting
