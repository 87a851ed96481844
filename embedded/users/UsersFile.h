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

/// Thrown for a file that cannot be used; what() says file, line and why.
class UsersFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// What is wrong with the name of a user; empty if nothing is.
std::string nameFault(std::string_view name);

/// The users that `text` lists, in its order. Throws UsersFileError, which names `file`, for the
/// first faulty line, and for a name that comes twice.
std::vector<User> usersIn(std::string_view text, const std::string& file);

/// The users of a file. Throws UsersFileError if the file cannot be read or is faulty, if others
/// than its owner may write it, or if others than owner and group may read it.
std::vector<User> readUsers(const std::filesystem::path& file);

/// Adds a user to the file, or replaces the user of that name; everything else in the file stays.
/// Without `role` a known user keeps his role, and a new one gets Role::Read. `hash` is as in User.
/// A missing file is created for its owner only (0600). One process at a time replaces the file as
/// a whole, and keeps its mode and owner. Follows no link. Throws UsersFileError, and leaves the
/// file as it was then.
void putUser(const std::filesystem::path& file, const std::string& name, std::optional<Role> role,
             const std::string& hash);

/// Removes the user called `name`, in the same way as putUser(). Throws UsersFileError, also if
/// there is none.
void removeUser(const std::filesystem::path& file, const std::string& name);

} // namespace embedded::users
