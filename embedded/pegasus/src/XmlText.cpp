#include "StringRep.h"

#include "embedding/XmlWriter.h"
#include "text/Utf8.h"

#include <array>
#include <charconv>

namespace Pegasus::embedding {

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
    const char* const named = c == '<'    ? "&lt;"
                              : c == '>'  ? "&gt;"
                              : c == '&'  ? "&amp;"
                              : c == '"'  ? "&quot;"
                              : c == '\'' ? "&apos;"
                                          : nullptr;
    if (named) {
        out += named;
        return;
    }
    char digits[3];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, c);
    out.append("&#").append(digits, end.ptr) += ';';
}

/// Tells blanks that may be written as they are from those that a reader might take for layout.
class Blanks {
  public:
    /// For each special character in turn.
    bool isPlain(char32_t c, bool isLast) {
        return _afterPlainBlank = c == ' ' && !_afterPlainBlank && !isLast;
    }
    void passCharacter() { _afterPlainBlank = false; }

  private:
    bool _afterPlainBlank = true; // so that a first blank is escaped
};

} // namespace

void appendEscaped(std::string& out, std::string_view text) {
    Blanks blanks;
    const char* const end = text.data() + text.size();
    const char* run = text.data(); // what may be copied as it is
    for (const char* at = run; at != end; ++at) {
        const auto c = static_cast<unsigned char>(*at);
        if (!specials[c]) {
            blanks.passCharacter();
        } else if (!blanks.isPlain(c, at + 1 == end)) {
            out.append(run, at);
            appendReference(out, c);
            run = at + 1;
        }
    }
    out.append(run, end);
}

void appendEscaped(std::string& out, const String& text) {
    constexpr char32_t replacement = 0xFFFD;
    using namespace embedded::text;
    if (const std::optional<std::string_view> ascii = StringRep::ascii(text))
        return appendEscaped(out, *ascii);
    Blanks blanks;
    const Char16* at = text.getChar16Data();
    for (const Char16* const end = at + text.size(); at != end;) {
        const char32_t c = takeCharacter(at, end);
        if (c < 0x80 && specials[c]) {
            if (blanks.isPlain(c, at == end))
                out += ' ';
            else
                appendReference(out, static_cast<unsigned char>(c));
            continue;
        }
        blanks.passCharacter();
        const bool cannotBe = isHighSurrogate(c) || isLowSurrogate(c) || c == 0xFFFE || c == 0xFFFF;
        embedded::text::appendUtf8(out, cannotBe ? replacement : c);
    }
}

void appendAttribute(std::string& out, std::string_view name, const String& value) {
    (out += ' ').append(name).append("=\"");
    appendEscaped(out, value);
    out += '"';
}

} // namespace Pegasus::embedding
