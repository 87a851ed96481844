// Pulled enumerations (DSP0200 1.4 clause 5.3.2.24): the server keeps an operation's answer between
// requests.
#pragma once

#include "limits/Limits.h"
#include "routing/CimOperations.h"
#include "threads/Locks.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace embedded::routing {

class Enumerations;

/// An operation, and the part of its answer that has not been pulled.
class Enumeration {
  public:
    explicit Enumeration(Operation operation) : _operation(std::move(operation)) {}
    Enumeration(const Enumeration&) = delete;
    Enumeration& operator=(const Enumeration&) = delete;

    const Operation& operation() const { return _operation; } ///< to which the answer refers
    void setAnswer(Cursor next) { _next = std::move(next); }
    /// Takes the next thing; false at the end.
    bool next(Answered& answered);
    /// Whether there is a next thing, which it fetches and keeps for next().
    bool hasMore();

  private:
    const Operation _operation;
    Cursor _next;
    std::optional<Answered> _ahead;
};

/// The right to pull from an enumeration, held by one request at a time. A lease that ends without
/// giveBack() closes the enumeration.
///
/// Thread-safety: one thread at a time. Outlived by its Enumerations.
class EnumerationLease {
  public:
    EnumerationLease() = default;
    EnumerationLease(EnumerationLease&& other) noexcept { *this = std::move(other); }
    EnumerationLease& operator=(EnumerationLease&& other) noexcept;
    ~EnumerationLease();

    explicit operator bool() const { return _enumeration != nullptr; }
    Enumeration* operator->() const { return _enumeration; }
    /// The next request finds the enumeration by this text, which cannot be guessed.
    const std::string& context() const { return _context; }
    /// Counts the `objects` that the answer keeps in memory; may be called once. Throws
    /// CIM_ERR_SERVER_LIMITS_EXCEEDED if all enumerations together keep too many.
    void charge(std::size_t objects);
    /// From now on the enumeration waits for its next request, until its time-out.
    void giveBack() noexcept;

  private:
    friend class Enumerations;
    EnumerationLease(Enumerations& all, std::string context, Enumeration& enumeration)
        : _all(&all), _context(std::move(context)), _enumeration(&enumeration) {}

    Enumerations* _all = nullptr;
    std::string _context;
    Enumeration* _enumeration = nullptr;
};

/// All enumerations that are open. Errors are Pegasus::CIMException.
///
/// An enumeration belongs to the user and the namespace that opened it. For others, its context
/// does not exist.
///
/// Thread-safety: all functions may be called from several threads at once.
class Enumerations {
  public:
    using Clock = std::chrono::steady_clock;
    struct Bounds {
        std::size_t open = limits::enumerations;
        std::size_t ofOneUser = limits::enumerationsOfOneUser;
        std::size_t objects = limits::enumerationObjects; ///< that all keep in memory of their own
    };

    Enumerations() : Enumerations(Bounds()) {}
    explicit Enumerations(const Bounds& bounds,
                          std::function<Clock::time_point()> now = Clock::now);
    /// REQUIRES: no lease is left.
    ~Enumerations();
    Enumerations(const Enumerations&) = delete;
    Enumerations& operator=(const Enumerations&) = delete;

    /// A new enumeration, without an answer yet. CIM_ERR_SERVER_LIMITS_EXCEEDED if there are too
    /// many.
    EnumerationLease open(Operation operation, std::chrono::seconds timeOut);
    /// The enumeration that `request` pulls from; `request` has the kind, caller and namespace of
    /// the operation that opened it. CIM_ERR_INVALID_ENUMERATION_CONTEXT if there is none,
    /// CIM_ERR_FAILED while another request pulls from it.
    EnumerationLease take(const std::string& context, const Operation& request);
    /// Closes the enumeration of `request`, whose kind does not matter. Errors as of take(), but
    /// CIM_ERR_PULL_CANNOT_BE_ABANDONED while another request pulls from it.
    void close(const std::string& context, const Operation& request);

    std::size_t size() const; ///< how many are open

  private:
    friend class EnumerationLease;
    struct Open {
        std::unique_ptr<Enumeration> enumeration;
        std::chrono::seconds timeOut{};
        std::size_t objects = 0;
        bool isLeased = true;
        Clock::time_point until{}; ///< unless it is leased
    };
    using Table = std::map<std::string, Open, std::less<>>;

    Table::iterator find(const std::string& context, const Operation& request) REQUIRES(_mutex);
    /// Takes the enumeration out of the table. The caller destroys it without the lock.
    std::unique_ptr<Enumeration> remove(Table::iterator which) REQUIRES(_mutex);
    void removeExpired();

    const Bounds _bounds;
    const std::function<Clock::time_point()> _now;
    mutable threads::Mutex _mutex;
    threads::Condition _changed;
    Table _open GUARDED_BY(_mutex);
    std::map<std::string, std::size_t> _ofUser GUARDED_BY(_mutex);
    std::size_t _objects GUARDED_BY(_mutex) = 0;
    bool _ending GUARDED_BY(_mutex) = false;
    std::thread _expiring;
};

} // namespace embedded::routing
