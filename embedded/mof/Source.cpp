#include "mof/Source.h"

#include "text/Utf8.h"
#include "threads/Locks.h"

#include <algorithm>
#include <set>

namespace embedded::mof {

namespace {

constexpr std::size_t longestShownToken = 40;

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

std::string shown(std::string_view token) {
    if (token.size() <= longestShownToken)
        return text::visible(token);
    std::size_t end = longestShownToken;
    // Not tested: the text is UTF-8, so one of four bytes begins a character.
    while (end > 0 && continuesCharacter(token[end]))
        --end;
    return text::visible(token.substr(0, end)) + "...";
}

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

// Every location points to the name of its file, and there are far more of them than files.
threads::Mutex namesMutex;
std::set<std::string> names GUARDED_BY(namesMutex);

const std::string& kept(const std::string& name) {
    const threads::Lock lock(namesMutex);
    return *names.insert(name).first;
}

} // namespace

std::string Location::text() const {
    return (file ? *file : std::string()) + ":" + std::to_string(line) + ":" +
           std::to_string(column);
}

MofError::MofError(const Location& where, const std::string& message)
    : std::runtime_error(where.text() + ": " + message), _where(where) {}

void Position::advance(std::string_view text) {
    for (const char c : text) {
        if (c == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
}

Source::Source(const std::string& name) : _name(&kept(name)) {}

Location Source::at(const Position& position) const {
    return Location{_name, position.line, position.column};
}

void Source::fail(const Position& position, const std::string& message) const {
    throw MofError(at(position), message);
}

std::string unexpected(std::string_view token, std::string_view expected) {
    std::string message = "unexpected ";
    if (token.empty())
        message += "end of file";
    else if (token.front() == '"' || token.front() == '\'')
        message += shown(token);
    else
        message += "'" + shown(token) + "'";
    message += ", expected ";
    message += expected;
    return message;
}

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
