#include "register/MofTokens.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

namespace registering {
namespace {

class Scanner {
  public:
    Scanner(const std::string& text, const std::string& origin) : m_text(text), m_origin(origin) {}

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
        const unsigned line = m_line;
        if (m_at == m_text.size())
            return {Token::Kind::End, "", line};
        const std::size_t from = m_at;
        if (m_text[m_at] == '"') {
            endOfString();
            return {Token::Kind::String, m_text.substr(from, m_at - from), line};
        }
        while (m_at < m_text.size() && inWord(m_text[m_at]))
            ++m_at;
        if (m_at > from)
            return {Token::Kind::Word, m_text.substr(from, m_at - from), line};
        ++m_at;
        return {Token::Kind::Symbol, m_text.substr(from, 1), line};
    }

    // Passes one space, comment or pragma; false if there is none here.
    bool skip() {
        if (m_at == m_text.size())
            return false;
        if (std::isspace(static_cast<unsigned char>(m_text[m_at])) != 0) {
            m_line += m_text[m_at++] == '\n';
            return true;
        }
        if (m_text[m_at] == '#' || m_text.compare(m_at, 2, "//") == 0) {
            m_at = std::min(m_text.find('\n', m_at), m_text.size());
            return true;
        }
        if (m_text.compare(m_at, 2, "/*") == 0) {
            const std::size_t end = m_text.find("*/", m_at + 2);
            if (end == std::string::npos)
                fail("a comment has no end");
            for (; m_at < end + 2; ++m_at)
                m_line += m_text[m_at] == '\n';
            return true;
        }
        return false;
    }

    void endOfString() {
        for (++m_at; m_at < m_text.size() && m_text[m_at] != '\n'; ++m_at) {
            if (m_text[m_at] == '"') {
                ++m_at;
                return;
            }
            m_at += m_text[m_at] == '\\' && m_at + 1 < m_text.size();
        }
        fail("a string has no end");
    }

    static bool inWord(char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.' ||
               c == '+' || c == '-';
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw std::runtime_error(m_origin + ":" + std::to_string(m_line) + ": " + what);
    }

    const std::string& m_text;
    const std::string& m_origin;
    std::size_t m_at = 0;
    unsigned m_line = 1;
};

} // namespace

std::vector<Token> mofTokens(const std::string& text, const std::string& origin) {
    return Scanner(text, origin).all();
}

} // namespace registering
