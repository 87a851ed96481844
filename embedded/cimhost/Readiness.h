// What the service manager that started the server is told of it: sd_notify(3).
#pragma once

#include <string_view>

namespace embedded::cimhost {

/// The datagram socket that the environment names (NOTIFY_SOCKET); without one nothing is told.
/// Whoever does not listen there is not waited for longer than a second, and no failure is one of
/// the server's.
///
/// Thread-safety: all functions may be called from several threads at once.
class Readiness {
  public:
    Readiness() noexcept;
    ~Readiness();
    Readiness(const Readiness&) = delete;
    Readiness& operator=(const Readiness&) = delete;

    /// The server serves; also the end of reloading.
    void ready() const noexcept;
    /// What can be read again is being read again. Followed by ready().
    void reloading() const noexcept;
    /// The server comes to its end.
    void stopping() const noexcept;

  private:
    void tell(std::string_view state) const noexcept;

    int _socket = -1; // connected, or none
};

} // namespace embedded::cimhost
