// Who may ask: a line with an Authorization field, behind it a file of users. What is read of the
// field is what it encodes; a file is taken as a whole or refused with the place of its fault,
// without what stands there, and each of its users is one that can be written.
#include "fuzz/Fuzz.h"

#include "users/Accounts.h"
#include "users/Credentials.h"
#include "users/Password.h"
#include "users/UsersFile.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>

namespace {

using namespace embedded::users;
using fuzz::require;

std::string base64(std::string_view bytes) {
    static constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        unsigned group = 0;
        for (std::size_t i = 0; i < 3; ++i)
            group = group << 8U |
                    (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U);
        for (std::size_t i = 0; i < 4; ++i)
            text += at + i <= bytes.size() ? digits[group >> (18 - 6 * i) & 63U] : '=';
    }
    return text;
}

void checkField(const std::string& field) {
    const auto read = basicCredentials(field);
    if (!read)
        return;
    require(read->name.find(':') == std::string::npos, "a name has no colon", field);
    const std::string all = read->name + ":" + read->password;
    require(std::none_of(all.begin(), all.end(),
                         [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }),
            "credentials have no control characters", field);
    const auto again = basicCredentials("Basic " + base64(all));
    require(again && again->name == read->name && again->password == read->password,
            "credentials are read as they were written", field);
}

void checkFile(std::string_view text) {
    std::vector<User> users;
    try {
        users = usersIn(text, "users");
    } catch (const UsersFileError& error) {
        const std::string_view what = error.what();
        require(what.substr(0, 6) == "users:" && what.size() > 8, "a fault has its place", what);
        require(what.find('$') == std::string_view::npos ||
                    what.find("comes twice") != std::string_view::npos ||
                    what.find("($y$)") != std::string_view::npos,
                "a fault shows no hash", what);
        return;
    }
    std::set<std::string> names;
    std::string written;
    for (const User& user : users) {
        require(names.insert(user.name).second, "a user comes once", user.name);
        require(nameFault(user.name).empty(), "a user has a name that can be", user.name);
        require(user.hash == noPassword || hashFault(user.hash).empty(),
                "a user has a hash that can be", user.hash);
        written += user.name + ":" + roleName(user.role) + ":" + user.hash + "\n";
    }
    const std::vector<User> again = usersIn(written, "users");
    const auto same = [](const User& left, const User& right) {
        return left.name == right.name && left.role == right.role && left.hash == right.hash;
    };
    require(std::equal(users.begin(), users.end(), again.begin(), again.end(), same),
            "users are read as they were written", written);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    checkField(bytes.substr(0, end));
    checkFile(std::string_view(bytes).substr(std::min(end + 1, bytes.size())));
    networkOf(std::string_view(bytes).substr(0, end));
    return 0;
}
