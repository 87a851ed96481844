// Places for work, so that one kind of it cannot take every thread there is.
#pragma once

#include "threads/Locks.h"

#include <chrono>
#include <functional>
#include <list>
#include <utility>
#include <vector>

namespace embedded::http {

/// Lanes with a number of places each. Work that needs places waits until there is one in each of
/// its lanes, without a thread; the longest waiting is looked at first.
///
/// Thread-safety: all functions may be called from several threads at once; what they call is
/// called on the caller's thread, with no lock held.
class Lanes {
  public:
    using Clock = std::chrono::steady_clock;

    struct Work {
        std::vector<unsigned> lanes;  ///< each once
        std::function<void()> start;  ///< called once, unless giveUp is; leave() is due after it
        std::function<void()> giveUp; ///< called when `until` is over before there were places
        Clock::time_point until;
    };

    explicit Lanes(std::vector<unsigned> places) : _free(std::move(places)) {}

    /// Starts `work` or keeps it.
    void enter(Work work);
    /// Frees a place in each of `lanes`, and starts what can be started now.
    void leave(const std::vector<unsigned>& lanes);
    /// Gives up what has waited until `now` or longer.
    void expire(Clock::time_point now);
    bool isWaiting() const;

  private:
    bool take(const std::vector<unsigned>& lanes) REQUIRES(_mutex);

    mutable threads::Mutex _mutex;
    std::vector<unsigned> _free GUARDED_BY(_mutex); // places of each lane
    std::list<Work> _waiting GUARDED_BY(_mutex);    // in the order in which they came
};

} // namespace embedded::http
