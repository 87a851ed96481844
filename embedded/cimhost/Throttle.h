// Log lines that clients can cause as often as they like.
#pragma once

#include "threads/Locks.h"

#include <chrono>
#include <functional>
#include <map>
#include <string>

namespace embedded::cimhost {

/// Lets some lines of each kind through in a second and counts the rest. The count is told before
/// the next line of any kind that comes in a later second.
///
/// Thread-safety: may be called from several threads at once.
class Throttle {
  public:
    using Clock = std::chrono::steady_clock;
    /// `say` takes a line; called by one thread at a time.
    explicit Throttle(std::function<void(const std::string&)> say,
                      std::function<Clock::time_point()> now = Clock::now);

    /// `kind`: what the line is about, one of few; a text of the program, never one of a client.
    void operator()(const std::string& kind, const std::string& line);
    /// Tells what was counted and not yet told.
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
