#include "mof/Expectation.h"

#include <algorithm>

namespace embedded::mof {

namespace {

// When every one of `members` is expected, all of them are named by `name`.
struct Group {
    std::vector<std::string> members;
    std::string name;
};

const std::vector<Group>& groups() {
    static const std::vector<Group> table = {
        // Where a name may be a keyword, each keyword is expected, too.
        {{"a name", "'class'", "'instance'", "'of'", "'as'", "'qualifier'", "'scope'", "'flavor'",
          "a type", "a scope", "a flavor"},
         "a name"},
        {{"an integer", "a real number", "a character", "a string", "a boolean", "'null'"},
         "a value"},
        {{"'class'", "'qualifier'", "a scope"}, "a scope"},
    };
    return table;
}

void fold(std::vector<std::string>& tokens, const Group& group) {
    const auto expected = [&](const std::string& token) {
        return std::find(tokens.begin(), tokens.end(), token) != tokens.end();
    };
    const auto isMember = [&](const std::string& token) {
        return std::find(group.members.begin(), group.members.end(), token) != group.members.end();
    };
    if (!std::all_of(group.members.begin(), group.members.end(), expected))
        return;
    tokens.erase(std::remove_if(tokens.begin(), tokens.end(), isMember), tokens.end());
    tokens.insert(tokens.begin(), group.name);
}

} // namespace

std::string listExpected(std::vector<std::string> tokens) {
    for (const Group& group : groups())
        fold(tokens, group);
    std::string list;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (i > 0)
            list += i + 1 == tokens.size() ? " or " : ", ";
        list += tokens[i];
    }
    return list;
}

} // namespace embedded::mof
