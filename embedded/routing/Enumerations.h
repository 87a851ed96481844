// Pulled enumerations (DSP0200 1.4 clause 5.3.2.24): operations whose answers are held between
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

/// An operation, and what of its answer has not been pulled.
class Enumeration {
  public:
    explicit Enumeration(Operation operation) : _operation(std::move(operation)) {}
    Enumeration(const Enumeration&) = delete;
    Enumeration& operator=(const Enumeration&) = delete;

    const Operation& operation() const { return _operation; } ///< to which the answer refers
    void setAnswer(Cursor next) { _next = std::move(next); }
    /// The next thing, or false when there is no more.
    bool next(Answered& answered);
    /// Whether there is a next thing, which is looked up and kept for that.
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
    /// The next request finds the enumeration by it; nobody can guess it.
    const std::string& context() const { return _context; }
    /// Counts the `objects` things that the answer keeps in memory. To be called once. Throws
    /// CIM_ERR_SERVER_LIMITS_EXCEEDED when all enumerations together keep too many.
    void charge(std::size_t objects);
    /// The enumeration waits for its next request, as long as its time-out says.
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

    /// A new one, whose answer is still to come. CIM_ERR_SERVER_LIMITS_EXCEEDED when there are too
    /// many.
    EnumerationLease open(Operation operation, std::chrono::seconds timeOut);
    /// The one that `request` wants to read on in: its kind, caller and namespace are those of the
    /// operation that it was opened with. CIM_ERR_INVALID_ENUMERATION_CONTEXT when there is none,
    /// CIM_ERR_FAILED while another request reads on in it.
    EnumerationLease take(const std::string& context, const Operation& request);
    /// Closes the one that `request`, whose kind does not count, is about. Errors as of take(), but
    /// CIM_ERR_PULL_CANNOT_BE_ABANDONED while another request reads on in it.
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
    /// Takes it out of the table. What it holds ends with what is returned, without the lock.
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
