// Threads that run what would keep the connections waiting.
#pragma once

#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace embedded::http {

/// A queue of jobs and the threads that take them. What a job throws ends the process, so it
/// does not throw.
///
/// Thread-safety: submit() may be called from any thread; the rest from the owner's.
class Workers {
  public:
    Workers();
    /// As leave(), when neither join() nor leave() came before.
    ~Workers();
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    void start(unsigned threads);
    void submit(std::function<void()> job);
    /// Takes no more jobs, drops those not begun, and waits for the others.
    void join();
    /// The same without waiting: a thread whose job does not return is left to itself. Such a job
    /// must own what it uses.
    void leave();

  private:
    struct Queue;
    void close();

    std::shared_ptr<Queue> _queue; // shared with the threads, which may outlive this object
    std::vector<std::thread> _threads;
};

} // namespace embedded::http
