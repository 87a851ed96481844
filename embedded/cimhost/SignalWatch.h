// SIGINT, SIGTERM and SIGHUP as calls on a thread, where everything may be done.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace embedded::cimhost {

/// Keeps SIGINT, SIGTERM and SIGHUP from all threads that are started from now on, so that a
/// SignalWatch gets them, and SIGPIPE from the process, so that a reader of our output may leave.
/// To be called before the first thread is started.
void takeSignals();

/// Thread-safety: to be made and destroyed by one thread.
class SignalWatch {
  public:
    /// Calls on a thread of its own: `end` for each SIGINT and SIGTERM with how many have come,
    /// `reload` for SIGHUP, which must not throw.
    SignalWatch(std::function<void(unsigned count)> end, std::function<void()> reload);
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

  private:
    std::atomic<bool> _ending{false};
    std::thread _thread;
};

} // namespace embedded::cimhost
