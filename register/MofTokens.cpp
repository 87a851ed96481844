#include "register/MofTokens.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

namespace registering {
namespace {

class Scanner {
  public:
    Scanner(const std::string& text, const std::string& origin) : _text(text), _origin(origin) {}

    std::vector<Token> all() {
        std::vector<Token> tokens;
        do
            tokens.push_back(next());
        while (tokens.back().kind != Token::Kind::End);
        return tokens;
    }

  private:
    Token next() {
        while (skip())
            ;
        const unsigned line = _line;
        if (_at == _text.size())
            return {Token::Kind::End, "", line};
        const std::size_t from = _at;
        if (_text[_at] == '"') {
            endOfString();
            return {Token::Kind::String, _text.substr(from, _at - from), line};
        }
        while (_at < _text.size() && inWord(_text[_at]))
            ++_at;
        if (_at > from)
            return {Token::Kind::Word, _text.substr(from, _at - from), line};
        ++_at;
        return {Token::Kind::Symbol, _text.substr(from, 1), line};
    }

    // Passes one space, comment or pragma; false if there is none here.
    bool skip() {
        if (_at == _text.size())
            return false;
        if (std::isspace(static_cast<unsigned char>(_text[_at])) != 0) {
            _line += _text[_at++] == '\n';
            return true;
        }
        if (_text[_at] == '#' || _text.compare(_at, 2, "//") == 0) {
            _at = std::min(_text.find('\n', _at), _text.size());
            return true;
        }
        if (_text.compare(_at, 2, "/*") == 0) {
            const std::size_t end = _text.find("*/", _at + 2);
            if (end == std::string::npos)
                fail("a comment has no end");
            for (; _at < end + 2; ++_at)
                _line += _text[_at] == '\n';
            return true;
        }
        return false;
    }

    void endOfString() {
        for (++_at; _at < _text.size() && _text[_at] != '\n'; ++_at) {
            if (_text[_at] == '"') {
                ++_at;
                return;
            }
            _at += _text[_at] == '\\' && _at + 1 < _text.size();
        }
        fail("a string has no end");
    }

    static bool inWord(char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.' ||
               c == '+' || c == '-';
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw std::runtime_error(_origin + ":" + std::to_string(_line) + ": " + what);
    }

    const std::string& _text;
    const std::string& _origin;
    std::size_t _at = 0;
    unsigned _line = 1;
};

} // namespace

std::vector<Token> mofTokens(const std::string& text, const std::string& origin) {
    return Scanner(text, origin).all();
}

} // namespace registering
