// Places for work, so that one kind of it cannot take every thread there is.
#pragma once

#include "threads/Locks.h"

#include <chrono>
#include <functional>
#include <list>
#include <utility>
#include <vector>

namespace embedded::http {

/// Each lane has a number of places. Work waits, without a thread, until each of its lanes has a
/// free place. Work that has waited longest comes first.
///
/// Thread-safety: all functions may be called from several threads at once; they call `start` and
/// `giveUp` on the caller's thread, with no lock held.
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

    /// Starts `work`, or keeps it until it can be started.
    void enter(Work work);
    /// Frees a place in each of `lanes`, and starts the work that can be started now.
    void leave(const std::vector<unsigned>& lanes);
    /// Gives up all work whose `until` is not after `now`.
    void expire(Clock::time_point now);
    bool isWaiting() const;

  private:
    bool take(const std::vector<unsigned>& lanes) REQUIRES(_mutex);

    mutable threads::Mutex _mutex;
    std::vector<unsigned> _free GUARDED_BY(_mutex); // places of each lane
    std::list<Work> _waiting GUARDED_BY(_mutex);    // in the order in which they came
};

} // namespace embedded::http
