#include "mof/Source.h"

#include "text/Utf8.h"
#include "threads/Locks.h"

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

// Every location points to the name of its file, and there are far more of them than files.
threads::Mutex namesMutex;
std::set<std::string> names GUARDED_BY(namesMutex);

const std::string& kept(const std::string& name) {
    const threads::Lock lock(namesMutex);
    return *names.insert(name).first;
}

} // namespace

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

} // namespace embedded::mof
