// The tokens of MOF text.
#pragma once

#include <string>
#include <vector>

namespace registering {

struct Token {
    enum class Kind { Word, String, Symbol, End };
    Kind kind;
    std::string text; ///< a string with its quotes
    unsigned line;
};

/// Splits MOF text into tokens, comments and pragmas left out; the last one is an End.
/// Throws std::runtime_error with "origin:line: ..." at a string or comment without an end.
std::vector<Token> mofTokens(const std::string& text, const std::string& origin);

} // namespace registering
