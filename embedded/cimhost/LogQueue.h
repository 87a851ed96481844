// Log lines go through a queue, so that whoever logs does not wait for whoever reads them.
#pragma once

#include "limits/Limits.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace embedded::cimhost {

/// A file descriptor with a queue and a thread that writes. A text that comes while the queue is
/// full is dropped and counted; a line tells the count when there is room again.
///
/// Thread-safety: all functions may be called from several threads at once.
class LogQueue {
  public:
    /// `descriptor` stays the caller's and open. Its settings are not changed: others may have it,
    /// too. `limit`: bytes that wait at most, unless a single text has more.
    explicit LogQueue(int descriptor, std::size_t limit = limits::logQueue);
    /// Gives up what is not written.
    ~LogQueue();
    LogQueue(const LogQueue&) = delete;
    LogQueue& operator=(const LogQueue&) = delete;

    /// Queues `text`, whole or not at all. Does not wait.
    void put(std::string text) noexcept;
    /// Waits until everything is written, no longer than `patience`; false: something is left.
    bool drain(std::chrono::milliseconds patience);

  private:
    class Shared;
    std::shared_ptr<Shared> _shared; // and the thread's, which may be stuck in a write for ever
};

} // namespace embedded::cimhost
