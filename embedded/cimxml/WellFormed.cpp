#include "cimxml/WellFormed.h"

#include "cimxml/Rejection.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <vector>

namespace embedded::cimxml {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t\r\n";

bool isBlank(char c) {
    return blanks.find(c) != std::string_view::npos;
}

// XML 1.0, production 2.
bool isXmlCharacter(char32_t c) {
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c < 0xD800) ||
           (c >= 0xE000 && c < 0xFFFE) || (c >= 0x10000 && c < 0x110000);
}

bool isNameStart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool isNameCharacter(char c) {
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

bool equalNoCase(std::string_view a, std::string_view b) {
    const auto lower = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

// Takes one character off the front of `rest`; false when that is not UTF-8 (RFC 3629: no
// surrogates, nothing longer than needed, nothing beyond U+10FFFF).
bool takeUtf8(std::string_view& rest, char32_t& c) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    const unsigned char first = byte(0);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length == 0 || rest.size() < length) {
        return false;
    }
    c = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80) {
            return false;
        }
        c = (c << 6) | (byte(i) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    if (c < least[length] || c >= 0x110000 || (c >= 0xD800 && c < 0xE000)) {
        return false;
    }
    rest.remove_prefix(length);
    return true;
}

void checkCharacters(std::string_view text) {
    for (std::string_view rest = text; !rest.empty();) {
        const std::string place = " at byte " + std::to_string(text.size() - rest.size());
        char32_t c = 0;
        if (!takeUtf8(rest, c)) {
            rejectNotValid("not UTF-8" + place);
        }
        if (!isXmlCharacter(c)) {
            rejectNotWellFormed("character not allowed in XML" + place);
        }
    }
}

class Scanner {
  public:
    explicit Scanner(std::string_view text) : _text(text) {}

    void document() {
        declaration();
        while (_at < _text.size()) {
            if (_text[_at] == '<') {
                markup();
            } else {
                characters();
            }
        }
        if (!_open.empty()) {
            fail("element " + std::string(_open.back()) + " is not closed");
        }
        if (!_rootSeen) {
            rejectNotValid("no element");
        }
    }

  private:
    [[noreturn]] void fail(const std::string& what) const {
        rejectNotWellFormed(what + " at byte " + std::to_string(_at));
    }

    bool startsWith(std::string_view token) const {
        return _text.substr(_at, token.size()) == token;
    }

    bool accept(std::string_view token) {
        if (!startsWith(token)) {
            return false;
        }
        _at += token.size();
        return true;
    }

    void expect(std::string_view token) {
        if (!accept(token)) {
            fail("\"" + std::string(token) + "\" expected");
        }
    }

    bool skipBlanks() {
        const std::size_t before = _at;
        while (_at < _text.size() && isBlank(_text[_at])) {
            ++_at;
        }
        return _at != before;
    }

    // What stands before `end`, which is skipped too.
    std::string_view takeUntil(std::string_view end) {
        const std::size_t found = _text.find(end, _at);
        if (found == std::string_view::npos) {
            fail("\"" + std::string(end) + "\" missing");
        }
        const std::string_view taken = _text.substr(_at, found - _at);
        _at = found + end.size();
        return taken;
    }

    std::string_view takeName() {
        const std::size_t begin = _at;
        if (_at < _text.size() && isNameStart(_text[_at])) {
            while (_at < _text.size() && isNameCharacter(_text[_at])) {
                ++_at;
            }
        }
        if (_at == begin) {
            fail("name expected");
        }
        return _text.substr(begin, _at - begin);
    }

    std::string_view takeQuoted() {
        if (_at == _text.size() || (_text[_at] != '"' && _text[_at] != '\'')) {
            fail("quote expected");
        }
        const std::string_view quote = _text.substr(_at++, 1);
        return takeUntil(quote);
    }

    void declaration() {
        accept(byteOrderMark);
        if (!accept("<?xml") || !skipBlanks()) {
            rejectNotValid("no XML declaration");
        }
        constexpr std::array<std::string_view, 3> names = {"version", "encoding", "standalone"};
        std::array<std::string_view, 3> values;
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (accept(names[i])) {
                skipBlanks();
                expect("=");
                skipBlanks();
                values[i] = takeQuoted();
                if (!skipBlanks()) {
                    break;
                }
            }
        }
        expect("?>");
        if (values[0] != "1.0") {
            rejectNotValid("XML version is not 1.0");
        }
        if (!values[1].empty() && !equalNoCase(values[1], "utf-8")) {
            rejectNotValid("encoding is not UTF-8");
        }
    }

    void characters() {
        const std::size_t end = std::min(_text.find('<', _at), _text.size());
        const std::string_view run = _text.substr(_at, end - _at);
        if (_open.empty() && run.find_first_not_of(blanks) != std::string_view::npos) {
            fail("text outside of the root element");
        }
        if (run.find("]]>") != std::string_view::npos) {
            fail("\"]]>\" in text");
        }
        checkReferences(run);
        _at = end;
    }

    void markup() {
        if (accept("<!--")) {
            if (const std::string_view text = takeUntil("-->");
                text.find("--") != std::string_view::npos ||
                (!text.empty() && text.back() == '-')) {
                fail("\"--\" in a comment");
            }
        } else if (accept("<?")) {
            if (equalNoCase(takeName(), "xml")) {
                fail("XML declaration not at the start");
            }
            takeUntil("?>");
        } else if (accept("<![CDATA[")) {
            if (_open.empty()) {
                fail("text outside of the root element");
            }
            takeUntil("]]>");
        } else if (accept("<!DOCTYPE")) {
            documentType();
        } else if (accept("</")) {
            endTag();
        } else {
            expect("<");
            startTag();
        }
    }

    void documentType() {
        if (_rootSeen || _documentTypeSeen) {
            fail("misplaced document type declaration");
        }
        _documentTypeSeen = true;
        while (_at < _text.size() && _text[_at] != '>') {
            if (_text[_at] == '[') {
                rejectNotValid("declarations in the document are not supported");
            }
            if (_text[_at] == '<') {
                fail("\"<\" in the document type declaration");
            }
            if (_text[_at] == '"' || _text[_at] == '\'') {
                takeQuoted();
            } else {
                ++_at;
            }
        }
        expect(">");
    }

    void startTag() {
        const std::string_view name = takeName();
        if (_open.empty() && _rootSeen) {
            fail("second root element");
        }
        _rootSeen = true;
        if (_open.size() == maximumDepth) {
            rejectNotValid("elements nested deeper than " + std::to_string(maximumDepth));
        }
        std::vector<std::string_view> attributes;
        while (true) {
            const bool separated = skipBlanks();
            if (accept("/>")) {
                return;
            }
            if (accept(">")) {
                _open.push_back(name);
                return;
            }
            if (!separated) {
                fail("blank or \">\" expected");
            }
            attribute(attributes);
        }
    }

    void attribute(std::vector<std::string_view>& attributes) {
        const std::string_view name = takeName();
        if (std::find(attributes.begin(), attributes.end(), name) != attributes.end()) {
            fail("second attribute " + std::string(name));
        }
        if (attributes.size() == maximumAttributes) {
            rejectNotValid("more than " + std::to_string(maximumAttributes) + " attributes");
        }
        attributes.push_back(name);
        skipBlanks();
        expect("=");
        skipBlanks();
        const std::string_view value = takeQuoted();
        if (value.find('<') != std::string_view::npos) {
            fail("\"<\" in an attribute value");
        }
        checkReferences(value);
    }

    void endTag() {
        const std::string_view name = takeName();
        skipBlanks();
        expect(">");
        if (_open.empty() || _open.back() != name) {
            fail("end tag " + std::string(name) + " without its start tag");
        }
        _open.pop_back();
    }

    void checkReferences(std::string_view text) const {
        for (std::size_t i = text.find('&'); i != std::string_view::npos;
             i = text.find('&', i + 1)) {
            const std::size_t end = text.find(';', i);
            if (end == std::string_view::npos || !isReference(text.substr(i + 1, end - i - 1))) {
                fail("unknown entity or character reference");
            }
        }
    }

    // `name`: what stands between "&" and ";".
    static bool isReference(std::string_view name) {
        constexpr std::array<std::string_view, 5> entities = {"lt", "gt", "amp", "quot", "apos"};
        if (name.empty() || name.front() != '#') {
            return std::find(entities.begin(), entities.end(), name) != entities.end();
        }
        const bool hexadecimal = name.substr(0, 2) == "#x";
        name.remove_prefix(hexadecimal ? 2 : 1);
        std::uint32_t code = 0;
        const auto [end, error] =
            std::from_chars(name.data(), name.data() + name.size(), code, hexadecimal ? 16 : 10);
        return error == std::errc() && end == name.data() + name.size() && isXmlCharacter(code);
    }

    std::string_view _text;
    std::size_t _at = 0;
    std::vector<std::string_view> _open;
    bool _rootSeen = false;
    bool _documentTypeSeen = false;
};

} // namespace

void checkWellFormed(const std::string& body) {
    if (body.empty()) {
        rejectNotValid("empty document");
    }
    checkCharacters(body);
    Scanner(body).document();
}

} // namespace embedded::cimxml
