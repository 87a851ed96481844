// The log of cimhost, on standard error. Logging never waits for a reader: lines that are not read
// are dropped and counted.
#pragma once

#include "limits/Limits.h"
#include "threads/Locks.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace embedded::cimhost {

/// Sends spdlog's messages from `level` on (a name that spdlog knows) to standard error, each as
/// one line, even if a client has put line ends into it.
void setUpLog(const std::string& level);

/// Logs a warning that clients can cause as often as they like: ten a second of a kind are written,
/// the rest is counted. `kind` is a text of the program. Thread-safety: any thread.
void warnOften(const std::string& kind, const std::string& line);

/// Writes the lines of `text` to the log, together and without time and level; control characters
/// are escaped. Thread-safety: any thread.
void logText(const std::string& text);

/// Waits, for a second at most, until the log is written. The last call before the process ends.
void endLog() noexcept;

/// A file descriptor with a queue and a thread that writes. While the queue is full, texts are
/// dropped and counted; a line tells the count when there is room again.
///
/// Thread-safety: all functions may be called from several threads at once.
class LogQueue {
  public:
    /// The caller owns `descriptor`, which stays open. Its flags are not changed, since other
    /// processes may share it. `limit`: most bytes that wait, unless a single text has more.
    explicit LogQueue(int descriptor, std::size_t limit = limits::logQueue);
    /// Drops what is not written yet.
    ~LogQueue();
    LogQueue(const LogQueue&) = delete;
    LogQueue& operator=(const LogQueue&) = delete;

    /// Queues `text`, whole or not at all. Does not wait.
    void put(std::string text) noexcept;
    /// Waits until everything is written, for `patience` at most; false if something is left.
    bool drain(std::chrono::milliseconds patience);

  private:
    class Shared;
    std::shared_ptr<Shared> _shared; // and the thread's, which may be stuck in a write for ever
};

/// Passes on some lines of each kind in a second, and counts the rest. A line with the count comes
/// before the next line, of any kind, in a later second.
///
/// Thread-safety: may be called from several threads at once.
class Throttle {
  public:
    using Clock = std::chrono::steady_clock;
    /// `say` takes a line; called by one thread at a time.
    explicit Throttle(std::function<void(const std::string&)> say,
                      std::function<Clock::time_point()> now = Clock::now);

    /// `kind`: what the line is about; one of few texts of the program, never a client's.
    void operator()(const std::string& kind, const std::string& line);
    /// Passes on the counts that have not been told yet.
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
