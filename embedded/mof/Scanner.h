// Splits text into tokens. The rules are in Scanner.l; they work on this class.
#pragma once

#include "mof/Source.h"

#include "MofParser.h"

#include <memory>

namespace embedded::mof {

class Scanner {
  public:
    /// `text` must be valid UTF-8 without NUL bytes and outlive the scanner.
    Scanner(std::string_view text, const Source& source);

    /// The next token. Throws MofError for text that is none.
    Parser::symbol_type next();

    /// The token that was returned last, as it is written; empty at the end.
    std::string_view tokenText() const { return _text.substr(_begin, _end - _begin); }

    const Source& source() const { return _source; }

    /// For the rules: the text that has just been matched follows the last one.
    void matched(std::size_t length);
    const Position& tokenStart() const { return _start; }

  private:
    struct Release {
        void operator()(void* generated) const;
    };

    std::string_view _text;
    const Source& _source;
    std::size_t _begin = 0, _end = 0;
    Position _start, _next;
    std::unique_ptr<void, Release> _generated; // flex's own state
};

} // namespace embedded::mof
