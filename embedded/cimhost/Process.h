// What the process has to do with the system: its user, core dumps, signals, the service manager.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <thread>

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

/// Blocks SIGINT, SIGTERM and SIGHUP in this thread and all that it starts, so that a SignalWatch
/// gets them, and ignores SIGPIPE, so that the readers of the output may leave. To be called before
/// the first thread is started.
void takeSignals();

/// Thread-safety: to be made and destroyed by one thread.
class SignalWatch {
  public:
    /// Calls, on a thread of its own, `end` for each SIGINT and SIGTERM, with their number so far,
    /// and `reload`, which must not throw, for SIGHUP.
    SignalWatch(std::function<void(unsigned count)> end, std::function<void()> reload);
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

  private:
    std::atomic<bool> _ending{false};
    std::thread _thread;
};

/// Tells the service manager that started the server about its state: sd_notify(3). Writes to the
/// datagram socket that the environment names (NOTIFY_SOCKET), if it names one. Waits
/// a second at most for the reader, and ignores failures.
///
/// Thread-safety: all functions may be called from several threads at once.
class Readiness {
  public:
    Readiness() noexcept;
    ~Readiness();
    Readiness(const Readiness&) = delete;
    Readiness& operator=(const Readiness&) = delete;

    /// The server serves, or has finished reloading.
    void ready() const noexcept;
    /// The server begins to reload. Followed by ready().
    void reloading() const noexcept;
    /// The server is stopping.
    void stopping() const noexcept;

  private:
    void tell(std::string_view state) const noexcept;

    int _socket = -1; // connected, or none
};

} // namespace embedded::cimhost
