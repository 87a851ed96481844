// Writes log lines through a queue, so that logging does not wait for the log's reader.
#pragma once

#include "limits/Limits.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace embedded::cimhost {

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

} // namespace embedded::cimhost
