// What a syntax message says could have stood where the parser stopped.
#pragma once

#include <string>
#include <vector>

namespace embedded::mof {

/// Names the expected tokens, given as the grammar names them: "'=', '[' or ';'". Tokens that
/// come together are named together: all constants are "a value", all words "a name".
std::string listExpected(std::vector<std::string> tokens);

} // namespace embedded::mof
