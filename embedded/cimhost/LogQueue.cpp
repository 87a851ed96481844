#include "cimhost/LogQueue.h"

#include "threads/Locks.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <deque>
#include <new>
#include <poll.h>
#include <string_view>
#include <thread>
#include <unistd.h>
#include <utility>

namespace embedded::cimhost {

using threads::Condition;
using threads::Lock;
using threads::Mutex;

namespace {

// A pipe that says that it can be written to takes as much without blocking, unless somebody else
// writes to it between (POSIX, write(): PIPE_BUF).
constexpr std::size_t writeSize = PIPE_BUF;
constexpr int pollTime = 100; // milliseconds; how soon the thread sees that it is given up

} // namespace

class LogQueue::Shared {
  public:
    Shared(int descriptor, std::size_t limit) : _descriptor(descriptor), _limit(limit) {}

    void put(std::string text) noexcept {
        const Lock lock(_mutex);
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
        const auto until = std::chrono::steady_clock::now() + patience;
        const Lock lock(_mutex);
        while (!_texts.empty() && _changed.waitUntil(_mutex, until))
            ;
        return _texts.empty();
    }

    void giveUp() {
        const Lock lock(_mutex);
        _givenUp = true;
        _changed.notifyAll();
    }

    void run() {
        while (const std::string* const text = next()) {
            write(*text);
            const Lock lock(_mutex);
            _size -= text->size();
            _texts.pop_front();
            _changed.notifyAll();
        }
    }

  private:
    // What is to be written now; it stays where it is while others are added. Null: nothing any
    // more.
    const std::string* next() {
        const Lock lock(_mutex);
        while (!_givenUp && _texts.empty())
            _changed.wait(_mutex);
        return _givenUp ? nullptr : &_texts.front();
    }

    void push(std::string text) REQUIRES(_mutex) {
        const std::size_t size = text.size();
        _texts.push_back(std::move(text));
        _size += size;
        _changed.notifyAll();
    }

    bool givenUp() {
        const Lock lock(_mutex);
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
    Mutex _mutex;
    Condition _changed;
    std::deque<std::string> _texts GUARDED_BY(_mutex);
    std::size_t _size GUARDED_BY(_mutex) = 0; // of all of them
    std::size_t _dropped GUARDED_BY(_mutex) = 0;
    bool _givenUp GUARDED_BY(_mutex) = false;
};

LogQueue::LogQueue(int descriptor, std::size_t limit)
    : _shared(std::make_shared<Shared>(descriptor, limit)) {
    std::thread([shared = _shared] { shared->run(); }).detach();
}

LogQueue::~LogQueue() { _shared->giveUp(); }

void LogQueue::put(std::string text) noexcept { _shared->put(std::move(text)); }

bool LogQueue::drain(std::chrono::milliseconds patience) { return _shared->drain(patience); }

} // namespace embedded::cimhost
