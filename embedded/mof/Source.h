// One text that is being read, and the places in it.
#pragma once

#include "mof/Mof.h"

#include <string_view>

namespace embedded::mof {

/// A place without its file: what the scanner and the parser carry along for every symbol.
struct Position {
    unsigned line = 1;
    unsigned column = 1; ///< bytes

    /// Steps over `text`. Only a line feed ends a line, so that CR LF counts as one line end.
    void advance(std::string_view text);
};

/// Gives positions the name of their file.
class Source {
  public:
    explicit Source(const std::string& name);

    Location at(const Position& position) const;
    [[noreturn]] void fail(const Position& position, const std::string& message) const;

  private:
    const std::string* _name;
};

/// The text of every syntax message. It shows `token` as it is written, and cuts a long one.
std::string unexpected(std::string_view token, std::string_view expected);

/// Names the expected tokens, given as the grammar names them: "'=', '[' or ';'". Tokens that
/// come together are named together: all constants are "a value", all words "a name".
std::string listExpected(std::vector<std::string> tokens);

} // namespace embedded::mof
