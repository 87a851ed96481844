// Mutexes with annotations: clang checks that whoever uses a guarded member holds its mutex
// (-Wthread-safety, an error here). Other compilers ignore the annotations.
#pragma once

#include <condition_variable>
#include <mutex>

#ifdef __clang__
#define EMBEDDED_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define EMBEDDED_THREAD_SAFETY(attribute)
#endif

/// Behind a member: it is read and written only with `mutex` held.
#define GUARDED_BY(mutex) EMBEDDED_THREAD_SAFETY(guarded_by(mutex))
/// Behind a function: whoever calls it holds `mutex`, and does so when it has returned.
#define REQUIRES(mutex) EMBEDDED_THREAD_SAFETY(requires_capability(mutex))
/// Behind a function: it takes `mutex`, or waits for a thread that has it; the caller must not hold
/// it.
#define EXCLUDES(mutex) EMBEDDED_THREAD_SAFETY(locks_excluded(mutex))
/// Behind a function whose locking cannot be expressed; a comment there describes it.
#define LOCKING_UNCHECKED EMBEDDED_THREAD_SAFETY(no_thread_safety_analysis)

namespace embedded::threads {

class EMBEDDED_THREAD_SAFETY(capability("mutex")) Mutex {
  public:
    Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() EMBEDDED_THREAD_SAFETY(acquire_capability()) { _mutex.lock(); }
    void unlock() EMBEDDED_THREAD_SAFETY(release_capability()) { _mutex.unlock(); }

  private:
    friend class Condition;
    std::mutex _mutex;
};

/// Holds a mutex as long as it lives.
class EMBEDDED_THREAD_SAFETY(scoped_lockable) Lock {
  public:
    explicit Lock(Mutex& mutex) EMBEDDED_THREAD_SAFETY(acquire_capability(mutex)) : _mutex(mutex) {
        mutex.lock();
    }
    ~Lock() EMBEDDED_THREAD_SAFETY(release_capability()) { _mutex.unlock(); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

  private:
    Mutex& _mutex;
};

/// Threads wait for it, each in a loop around wait(), which may return without a reason.
class Condition {
  public:
    void wait(Mutex& mutex) REQUIRES(mutex) {
        std::unique_lock<std::mutex> held(mutex._mutex, std::adopt_lock);
        _changed.wait(held);
        held.release();
    }
    /// False: `until` is over.
    template <class TimePoint>
    bool waitUntil(Mutex& mutex, const TimePoint& until) REQUIRES(mutex) {
        std::unique_lock<std::mutex> held(mutex._mutex, std::adopt_lock);
        const bool inTime = _changed.wait_until(held, until) == std::cv_status::no_timeout;
        held.release();
        return inTime;
    }
    void notifyAll() noexcept { _changed.notify_all(); }

  private:
    std::condition_variable _changed;
};

} // namespace embedded::threads
