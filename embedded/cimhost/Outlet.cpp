#include "cimhost/Outlet.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>
#include <poll.h>
#include <string_view>
#include <thread>
#include <unistd.h>
#include <utility>

namespace embedded::cimhost {
namespace {

// A pipe that says that it can be written to takes as much without blocking, unless somebody else
// writes to it between (POSIX, write(): PIPE_BUF).
constexpr std::size_t writeSize = PIPE_BUF;
constexpr int pollTime = 100; // milliseconds; how soon the thread sees that it is given up

} // namespace

class Outlet::Queue {
  public:
    Queue(int descriptor, std::size_t limit) : _descriptor(descriptor), _limit(limit) {}

    void put(std::string text) noexcept {
        const std::lock_guard lock(_mutex);
        try {
            if (_size == 0 || _size + text.size() <= _limit) {
                if (_dropped != 0)
                    push("(" + std::to_string(_dropped) +
                         " log lines were dropped: nobody read them)\n");
                _dropped = 0;
                push(std::move(text));
                return;
            }
        } catch (const std::bad_alloc&) { // dropped, too
        }
        ++_dropped;
    }

    bool drain(std::chrono::milliseconds patience) {
        std::unique_lock lock(_mutex);
        return _changed.wait_for(lock, patience, [&] { return _texts.empty(); });
    }

    void giveUp() {
        const std::lock_guard lock(_mutex);
        _givenUp = true;
        _changed.notify_all();
    }

    void run() {
        std::unique_lock lock(_mutex);
        for (;;) {
            _changed.wait(lock, [&] { return _givenUp || !_texts.empty(); });
            if (_givenUp)
                return;
            const std::string& text = _texts.front(); // stays where it is while others are added
            lock.unlock();
            write(text);
            lock.lock();
            _size -= _texts.front().size();
            _texts.pop_front();
            _changed.notify_all();
        }
    }

  private:
    void push(std::string text) {
        const std::size_t size = text.size();
        _texts.push_back(std::move(text));
        _size += size;
        _changed.notify_all();
    }

    bool givenUp() {
        const std::lock_guard lock(_mutex);
        return _givenUp;
    }

    // Until all is written, or nobody can read it any more.
    void write(std::string_view text) {
        while (!text.empty() && !givenUp()) {
            pollfd wanted{_descriptor, POLLOUT, 0};
            if (::poll(&wanted, 1, pollTime) == 0)
                continue;
            if ((wanted.revents & POLLOUT) == 0 && wanted.revents != 0)
                return;
            const ssize_t written =
                ::write(_descriptor, text.data(), std::min(text.size(), writeSize));
            if (written > 0)
                text.remove_prefix(static_cast<std::size_t>(written));
            else if (errno != EINTR && errno != EAGAIN)
                return;
        }
    }

    const int _descriptor;
    const std::size_t _limit;
    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<std::string> _texts;
    std::size_t _size = 0; // of all of them
    std::size_t _dropped = 0;
    bool _givenUp = false;
};

Outlet::Outlet(int descriptor, std::size_t limit)
    : _queue(std::make_shared<Queue>(descriptor, limit)) {
    std::thread([queue = _queue] { queue->run(); }).detach();
}

Outlet::~Outlet() {
    _queue->giveUp();
}

void Outlet::put(std::string text) noexcept {
    _queue->put(std::move(text));
}

bool Outlet::drain(std::chrono::milliseconds patience) {
    return _queue->drain(patience);
}

} // namespace embedded::cimhost
