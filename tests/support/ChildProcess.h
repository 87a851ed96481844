// Work in a process of its own: for what never returns, or spoils the state of its process.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include <sys/types.h>

namespace testsupport {

/// Runs `work` in a forked process whose standard output the test reads. The process is killed
/// with the object. To be created while the test has no other threads.
class ChildProcess {
  public:
    explicit ChildProcess(const std::function<void()>& work);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Everything written so far, after waiting until `text` was written `times` times, the process
    /// has ended, or `atMost` has passed.
    const std::string& outputUntil(const std::string& text, unsigned times,
                                   std::chrono::milliseconds atMost);
    /// Everything written so far, after `time`, or after the end of the process.
    const std::string& outputFor(std::chrono::milliseconds time);
    /// Whether the process has closed its output, as its end does.
    bool hasEnded() const { return _ended; }

  private:
    pid_t _process = -1;
    int _output = -1;
    bool _ended = false;
    std::string _written;
};

/// How often `text` occurs in `whole`.
unsigned occurrences(const std::string& whole, const std::string& text);

} // namespace testsupport
