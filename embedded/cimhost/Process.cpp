#include "cimhost/Process.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <grp.h>
#include <pwd.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace embedded::cimhost {
namespace {

void require(bool done, const Identity& identity) {
    if (!done)
        throw std::system_error(errno, std::generic_category(),
                                "cannot become the user " + identity.name);
}

sigset_t watched() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGHUP);
    return set;
}

constexpr ::timeval patience{1, 0};

// The socket's address: a path, or after '@' a name that is no file's. Length 0: neither.
::socklen_t read(std::string_view name, ::sockaddr_un& address) {
    if (name.size() < 2 || (name[0] != '/' && name[0] != '@') ||
        name.size() >= sizeof address.sun_path)
        return 0;
    address.sun_family = AF_UNIX;
    name.copy(static_cast<char*>(address.sun_path), name.size());
    if (name[0] == '@')
        address.sun_path[0] = '\0';
    // The name of a socket that is no file ends where the address does.
    return static_cast<::socklen_t>(offsetof(::sockaddr_un, sun_path) + name.size());
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

void takeSignals() {
    const sigset_t set = watched();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

SignalWatch::SignalWatch(std::function<void(unsigned)> end, std::function<void()> reload)
    : _thread([this, end = std::move(end), reload = std::move(reload)] {
          const sigset_t set = watched();
          unsigned count = 0;
          int signal = 0;
          while (sigwait(&set, &signal) == 0 && !_ending)
              if (signal == SIGHUP)
                  reload();
              else
                  end(++count);
      }) {}

SignalWatch::~SignalWatch() {
    _ending = true;
    // Ends the waiting, not the thread: the signal is blocked, see takeSignals().
    // NOLINTNEXTLINE(bugprone-bad-signal-to-kill-thread,cert-pos44-c)
    pthread_kill(_thread.native_handle(), SIGTERM);
    _thread.join();
}

Readiness::Readiness() noexcept {
    const char* const name = std::getenv("NOTIFY_SOCKET");
    ::sockaddr_un address{};
    const ::socklen_t length = name ? read(name, address) : 0;
    if (length == 0)
        return;
    _socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (_socket < 0)
        return;
    ::setsockopt(_socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    if (::connect(_socket, reinterpret_cast<const ::sockaddr*>(&address), length) != 0) {
        ::close(_socket);
        _socket = -1;
    }
}

Readiness::~Readiness() {
    if (_socket >= 0)
        ::close(_socket);
}

void Readiness::ready() const noexcept { tell("READY=1"); }

void Readiness::reloading() const noexcept {
    const std::chrono::microseconds now = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now().time_since_epoch()); // CLOCK_MONOTONIC
    std::array<char, 64> state{};
    const int length = std::snprintf(state.data(), state.size(), "RELOADING=1\nMONOTONIC_USEC=%lld",
                                     static_cast<long long>(now.count()));
    tell({state.data(), static_cast<std::size_t>(length)});
}

void Readiness::stopping() const noexcept { tell("STOPPING=1"); }

void Readiness::tell(std::string_view state) const noexcept {
    if (_socket >= 0)
        ::send(_socket, state.data(), state.size(), MSG_NOSIGNAL);
}

} // namespace embedded::cimhost
