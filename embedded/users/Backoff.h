// Counts recent failures, and tells how long to wait before the next attempt.
#pragma once

#include "users/LruCache.h"

#include <chrono>
#include <cstdint>
#include <string_view>

namespace embedded::users {

/// Counts failures by name or by address. The first ones are free, then each doubles the time
/// before the next attempt, up to a bound. Failures are forgotten after a while; when there are too
/// many, the oldest entry goes.
///
/// Thread-safety: none.
class Backoff {
  public:
    using Clock = std::chrono::steady_clock;
    Backoff();

    /// How long `who` has to wait; 0 if he need not.
    std::chrono::seconds wait(std::string_view who, Clock::time_point now);
    void failed(std::string_view who, Clock::time_point now);
    void forget(std::string_view who);

  private:
    struct Failures {
        unsigned count = 0;
        Clock::time_point last;
        Clock::time_point until;
    };
    LruCache<std::uint64_t, Failures> _failures; // by the hashes of names, which may be long
};

} // namespace embedded::users
