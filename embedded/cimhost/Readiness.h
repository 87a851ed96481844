// Tells the service manager that started the server about its state: sd_notify(3).
#pragma once

#include <string_view>

namespace embedded::cimhost {

/// Writes to the datagram socket that the environment names (NOTIFY_SOCKET), if it names one. Waits
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
