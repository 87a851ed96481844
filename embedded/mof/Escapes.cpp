#include "mof/Escapes.h"

#include "text/Utf8.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace embedded::mof {

namespace {

struct SimpleEscape {
    char letter;
    char value;
};

constexpr SimpleEscape simpleEscapes[] = {
    {'b', '\b'}, {'t', '\t'}, {'n', '\n'},  {'f', '\f'},
    {'r', '\r'}, {'"', '"'},  {'\'', '\''}, {'\\', '\\'},
};

constexpr const char* expectedEscape =
    R"(an escape: \b \t \n \f \r \" \' \\ or \x with 1 to 4 hexadecimal digits)";

// Walks over the inside of one literal. A literal never spans lines, so that a column is the
// literal's column and the offset.
class Decoder {
  public:
    Decoder(std::string_view literal, const Source& source, const Position& start)
        : _literal(literal), _source(source), _start(start) {}

    std::string decode() {
        std::string out;
        const std::size_t end = _literal.size() - 1;
        while (_at < end)
            if (_literal[_at] == '\\')
                decodeEscape(out);
            else
                out += _literal[_at++];
        return out;
    }

  private:
    void decodeEscape(std::string& out) {
        const std::size_t begin = _at;
        const char letter = _literal[begin + 1];
        if (letter == 'x' || letter == 'X') {
            text::appendUtf8(out, decodeHex());
            return;
        }
        const auto* found = std::find_if(std::begin(simpleEscapes), std::end(simpleEscapes),
                                         [&](const auto& e) { return e.letter == letter; });
        if (found == std::end(simpleEscapes))
            fail(begin, lengthOfEscape(begin), expectedEscape);
        out += found->value;
        _at += 2;
    }

    // Characters beyond the basic plane are written as two escapes, as in UTF-16.
    char32_t decodeHex() {
        const std::size_t begin = _at;
        const char32_t first = decodeUnit();
        if (first == 0)
            fail(begin, _at - begin, "a character other than U+0000");
        if (first >= 0xDC00 && first <= 0xDFFF)
            fail(begin, _at - begin, "a high surrogate before this low one");
        if (first < 0xD800 || first > 0xDBFF)
            return first;
        const std::string_view rest = _literal.substr(_at);
        if (rest.size() > 2 && rest[0] == '\\' && (rest[1] == 'x' || rest[1] == 'X')) {
            const char32_t second = decodeUnit();
            if (second >= 0xDC00 && second <= 0xDFFF)
                return 0x10000 + ((first - 0xD800) << 10U) + (second - 0xDC00);
        }
        fail(begin, _at - begin, "a low surrogate after this high one");
    }

    char32_t decodeUnit() {
        const std::size_t begin = _at;
        std::size_t digits = 0;
        while (digits < 4 &&
               std::isxdigit(static_cast<unsigned char>(_literal[begin + 2 + digits])))
            ++digits;
        if (digits == 0)
            fail(begin, lengthOfEscape(begin), expectedEscape);
        unsigned value = 0;
        const char* first = _literal.data() + begin + 2;
        std::from_chars(first, first + digits, value, 16);
        _at = begin + 2 + digits;
        return value;
    }

    // The backslash and one whole character after it.
    std::size_t lengthOfEscape(std::size_t begin) const {
        std::size_t end = begin + 2;
        while ((static_cast<unsigned char>(_literal[end]) & 0xC0U) == 0x80U)
            ++end;
        return end - begin;
    }

    [[noreturn]] void fail(std::size_t offset, std::size_t length, const char* expected) const {
        Position where = _start;
        where.advance(_literal.substr(0, offset));
        _source.fail(where, unexpected(_literal.substr(offset, length), expected));
    }

    std::string_view _literal;
    const Source& _source;
    Position _start;
    std::size_t _at = 1;
};

} // namespace

std::string decodeString(std::string_view literal, const Source& source, const Position& start) {
    if (literal.find('\\') == std::string_view::npos)
        return std::string(literal.substr(1, literal.size() - 2));
    return Decoder(literal, source, start).decode();
}

std::string decodeCharacter(std::string_view literal, const Source& source, const Position& start) {
    constexpr std::size_t longestInBasicPlane = 3;
    std::string text = decodeString(literal, source, start);
    if (text::countCharacters(text) != 1 || text.size() > longestInBasicPlane)
        source.fail(start, unexpected(literal, "one character up to U+FFFF between the quotes"));
    return text;
}

} // namespace embedded::mof
