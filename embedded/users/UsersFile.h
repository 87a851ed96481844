// The file of users: a line NAME:ROLE:HASH for each, empty lines, and comments, which begin with #.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::users {

enum class Role { Read, Write };

/// "read" or "write".
const char* roleName(Role role);

struct User {
    std::string name; ///< compared byte by byte
    Role role = Role::Read;
    std::string hash; ///< noPassword: comes with a certificate only
};

constexpr const char* noPassword = "*";

/// A file that cannot be used; what() says file, line and why.
class UsersFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// What is wrong with the name of a user; empty: nothing.
std::string nameFault(std::string_view name);

/// The users that `text` lists, in its order. `file`: its name, for errors. Throws UsersFileError
/// for the first line that is not as it should be, and for a name that comes twice.
std::vector<User> usersIn(std::string_view text, const std::string& file);

/// Those of a file. Throws UsersFileError if it cannot be read, has a fault, or if others than its
/// owner may write it, or others than owner and group read it.
std::vector<User> readUsers(const std::filesystem::path& file);

/// Puts a user into the file, in place of the one of that name if there is one; all else stays as
/// it is. Without `role` he has the one that he had, a new one Role::Read. `hash`: as in User. A
/// file that is not there is made, for its owner only (0600). The file is replaced as a whole, with
/// mode and owner that it had, and by one process at a time. Follows no link. Throws
/// UsersFileError; the file is then as before.
void putUser(const std::filesystem::path& file, const std::string& name, std::optional<Role> role,
             const std::string& hash);

/// Takes the user called `name` out, as putUser() puts one in. Throws UsersFileError, also if there
/// is none.
void removeUser(const std::filesystem::path& file, const std::string& name);

} // namespace embedded::users
