#include "http/Workers.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace embedded::http {

struct Workers::Queue {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> jobs;
    bool closed = false;

    void run() {
        for (;;) {
            std::function<void()> job;
            {
                std::unique_lock<std::mutex> lock(mutex);
                changed.wait(lock, [this] { return closed || !jobs.empty(); });
                if (closed)
                    return;
                job = std::move(jobs.front());
                jobs.pop_front();
            }
            job();
        }
    }
};

Workers::Workers() : _queue(std::make_shared<Queue>()) {
}

Workers::~Workers() {
    leave();
}

void Workers::start(unsigned threads) {
    while (_threads.size() < threads)
        _threads.emplace_back([queue = _queue] { queue->run(); });
}

void Workers::submit(std::function<void()> job) {
    const std::lock_guard<std::mutex> lock(_queue->mutex);
    if (_queue->closed)
        return;
    _queue->jobs.push_back(std::move(job));
    _queue->changed.notify_one();
}

void Workers::close() {
    // Jobs are destroyed outside the lock: what they own may end here, in any order it likes.
    std::deque<std::function<void()>> dropped;
    const std::lock_guard<std::mutex> lock(_queue->mutex);
    _queue->closed = true;
    dropped.swap(_queue->jobs);
    _queue->changed.notify_all();
}

void Workers::join() {
    close();
    for (std::thread& thread : _threads)
        thread.join();
    _threads.clear();
}

void Workers::leave() {
    close();
    for (std::thread& thread : _threads)
        thread.detach();
    _threads.clear();
}

} // namespace embedded::http
