// As whom the process runs, and what it leaves behind.
#pragma once

#include <string>
#include <sys/types.h>

namespace embedded::cimhost {

/// A user, with the group that the process gets.
struct Identity {
    std::string name;
    uid_t user = 0;
    gid_t group = 0;
};

/// The one of "NAME" or "NAME:GROUP". Throws std::invalid_argument if there is no such user or
/// group.
Identity identityOf(const std::string& text);

/// Makes the process, all of its threads, run as `identity` for good, with the groups of that user
/// besides the one named. Nothing happens if it does already. Throws std::system_error.
void become(const Identity& identity);

/// After a crash no file is left with what was in memory. Throws nothing: where it cannot be
/// forbidden it stays allowed.
void forbidCoreDumps() noexcept;

} // namespace embedded::cimhost
