#include "cimhost/Throttle.h"

#include "limits/Limits.h"

#include <utility>

namespace embedded::cimhost {

Throttle::Throttle(std::function<void(const std::string&)> say,
                   std::function<Clock::time_point()> now)
    : _say(std::move(say)), _now(std::move(now)) {}

void Throttle::operator()(const std::string& kind, const std::string& line) {
    const threads::Lock lock(_mutex);
    const Clock::time_point now = _now();
    for (auto& [name, second] : _kinds) {
        if (now - second.began < std::chrono::seconds(1))
            continue;
        tell(name, second);
        second = {now, 0};
    }
    if (++_kinds.try_emplace(kind, Second{now, 0}).first->second.lines <= limits::logLines)
        _say(line);
}

void Throttle::tellRest() {
    const threads::Lock lock(_mutex);
    for (auto& [name, second] : _kinds)
        tell(name, second);
    _kinds.clear();
}

void Throttle::tell(const std::string& kind, Second& second) {
    if (second.lines > limits::logLines)
        _say("(" + std::to_string(second.lines - limits::logLines) +
             " more lines of this kind: " + kind + ")");
}

} // namespace embedded::cimhost
