// Turns SIGINT, SIGTERM and SIGHUP into calls on a thread, where everything is allowed.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace embedded::cimhost {

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

} // namespace embedded::cimhost
