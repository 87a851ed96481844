#include "users/Backoff.h"

#include "limits/Limits.h"
#include "text/KeyedHash.h"

#include <algorithm>

namespace embedded::users {
namespace {

/// Between the attempts after `failures`.
std::chrono::seconds delay(unsigned failures) {
    if (failures < limits::freeFailures)
        return std::chrono::seconds(0);
    const unsigned doublings = std::min(failures - limits::freeFailures, 16U);
    return std::min(std::chrono::seconds(1U << doublings), limits::slowestAttempts);
}

} // namespace

Backoff::Backoff() : _failures(limits::failuresKept) {}

std::chrono::seconds Backoff::wait(std::string_view who, Clock::time_point now) {
    const Failures* const failures = _failures.find(text::keyedHash(who));
    if (failures == nullptr || failures->until <= now)
        return std::chrono::seconds(0);
    return std::chrono::ceil<std::chrono::seconds>(failures->until - now);
}

void Backoff::failed(std::string_view who, Clock::time_point now) {
    Failures& failures = _failures.touch(text::keyedHash(who));
    if (failures.last + limits::failureMemory <= now)
        failures.count = 0;
    failures.count = std::min(failures.count + 1, 1000U);
    failures.last = now;
    failures.until = now + delay(failures.count);
}

void Backoff::forget(std::string_view who) { _failures.forget(text::keyedHash(who)); }

} // namespace embedded::users
