// The user that the process runs as, and core dumps.
#pragma once

#include <string>
#include <sys/types.h>

namespace embedded::cimhost {

/// A user, and the group for the process.
struct Identity {
    std::string name;
    uid_t user = 0;
    gid_t group = 0;
};

/// Reads "NAME" or "NAME:GROUP". Throws std::invalid_argument if there is no such user or group.
Identity identityOf(const std::string& text);

/// Makes all threads of the process run as `identity` for good, also with the user's other groups.
/// Does nothing if they do already. Throws std::system_error.
void become(const Identity& identity);

/// Forbids core dumps, if possible. Throws nothing.
void forbidCoreDumps() noexcept;

} // namespace embedded::cimhost
