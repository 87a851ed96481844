// SIGINT and SIGTERM as calls on a thread, where everything may be done.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace embedded::cimhost {

/// Keeps SIGINT and SIGTERM from all threads that are started from now on, so that a SignalWatch
/// gets them; SIGPIPE from the process, so that a reader of our output may leave; and SIGHUP, so
/// that the terminal may. To be called before the first thread is started.
void takeSignals();

/// Thread-safety: to be made and destroyed by one thread.
class SignalWatch {
  public:
    /// Calls `arrived` on a thread of its own, for each signal with how many have come.
    explicit SignalWatch(std::function<void(unsigned count)> arrived);
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

  private:
    std::atomic<bool> _ending{false};
    std::thread _thread;
};

} // namespace embedded::cimhost
