#include "http/Lanes.h"

#include <iterator>
#include <utility>

namespace embedded::http {

void Lanes::enter(Work work) {
    {
        const threads::Lock lock(_mutex);
        if (!take(work.lanes)) {
            _waiting.push_back(std::move(work));
            return;
        }
    }
    work.start();
}

void Lanes::leave(const std::vector<unsigned>& lanes) {
    std::list<Work> ready;
    {
        const threads::Lock lock(_mutex);
        for (const unsigned lane : lanes)
            ++_free[lane];
        for (auto work = _waiting.begin(); work != _waiting.end();) {
            const auto next = std::next(work);
            if (take(work->lanes))
                ready.splice(ready.end(), _waiting, work);
            work = next;
        }
    }
    for (const Work& work : ready)
        work.start();
}

void Lanes::expire(Clock::time_point now) {
    std::list<Work> late;
    {
        const threads::Lock lock(_mutex);
        for (auto work = _waiting.begin(); work != _waiting.end();) {
            const auto next = std::next(work);
            if (work->until <= now)
                late.splice(late.end(), _waiting, work);
            work = next;
        }
    }
    for (const Work& work : late)
        work.giveUp();
}

bool Lanes::isWaiting() const {
    const threads::Lock lock(_mutex);
    return !_waiting.empty();
}

// A place in each of `lanes`, or in none.
bool Lanes::take(const std::vector<unsigned>& lanes) {
    for (const unsigned lane : lanes)
        if (_free[lane] == 0)
            return false;
    for (const unsigned lane : lanes)
        --_free[lane];
    return true;
}

} // namespace embedded::http
