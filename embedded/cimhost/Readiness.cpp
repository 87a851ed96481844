#include "cimhost/Readiness.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace embedded::cimhost {
namespace {

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
