// Log lines that clients can cause as often as they like.
#pragma once

#include "threads/Locks.h"

#include <chrono>
#include <functional>
#include <map>
#include <string>

namespace embedded::cimhost {

/// Passes on some lines of each kind in a second, and counts the rest. A line with the count comes
/// before the next line, of any kind, in a later second.
///
/// Thread-safety: may be called from several threads at once.
class Throttle {
  public:
    using Clock = std::chrono::steady_clock;
    /// `say` takes a line; called by one thread at a time.
    explicit Throttle(std::function<void(const std::string&)> say,
                      std::function<Clock::time_point()> now = Clock::now);

    /// `kind`: what the line is about; one of few texts of the program, never a client's.
    void operator()(const std::string& kind, const std::string& line);
    /// Passes on the counts that have not been told yet.
    void tellRest();

  private:
    struct Second {
        Clock::time_point began;
        unsigned lines = 0;
    };

    void tell(const std::string& kind, Second& second) REQUIRES(_mutex);

    const std::function<void(const std::string&)> _say;
    const std::function<Clock::time_point()> _now;
    threads::Mutex _mutex;
    std::map<std::string, Second> _kinds GUARDED_BY(_mutex);
};

} // namespace embedded::cimhost
