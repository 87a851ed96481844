#include "cimhost/Privileges.h"

#include <cerrno>
#include <grp.h>
#include <pwd.h>
#include <stdexcept>
#include <sys/resource.h>
#include <system_error>
#include <unistd.h>

namespace embedded::cimhost {
namespace {

void require(bool done, const Identity& identity) {
    if (!done)
        throw std::system_error(errno, std::generic_category(),
                                "cannot become the user " + identity.name);
}

} // namespace

Identity identityOf(const std::string& text) {
    const std::size_t colon = text.find(':');
    Identity identity{text.substr(0, colon)};
    const passwd* const user = ::getpwnam(identity.name.c_str());
    if (user == nullptr)
        throw std::invalid_argument("there is no user '" + identity.name + "'");
    identity.user = user->pw_uid;
    identity.group = user->pw_gid;
    if (colon == std::string::npos)
        return identity;
    const std::string name = text.substr(colon + 1);
    const group* const group = ::getgrnam(name.c_str());
    if (group == nullptr)
        throw std::invalid_argument("there is no group '" + name + "'");
    identity.group = group->gr_gid;
    return identity;
}

void become(const Identity& identity) {
    if (::geteuid() == identity.user && ::getuid() == identity.user &&
        ::getegid() == identity.group)
        return;
    require(::initgroups(identity.name.c_str(), identity.group) == 0, identity);
    require(::setresgid(identity.group, identity.group, identity.group) == 0, identity);
    require(::setresuid(identity.user, identity.user, identity.user) == 0, identity);
}

void forbidCoreDumps() noexcept {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
}

} // namespace embedded::cimhost
