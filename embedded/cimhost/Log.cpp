#include "cimhost/Log.h"

#include "text/Utf8.h"

#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <deque>
#include <mutex>
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
constexpr std::chrono::seconds endPatience{1};

LogQueue& logQueue() {
    static LogQueue standardError(STDERR_FILENO);
    return standardError;
}

Throttle& throttle() {
    static Throttle warnings([](const std::string& line) { spdlog::warn("{}", line); });
    return warnings;
}

class LogSink : public spdlog::sinks::base_sink<std::mutex> {
  protected:
    void sink_it_(const spdlog::details::log_msg& message) override {
        const std::string shown = text::visible({message.payload.data(), message.payload.size()});
        spdlog::details::log_msg visible = message;
        visible.payload = shown;
        spdlog::memory_buf_t line;
        formatter_->format(visible, line);
        logQueue().put({line.data(), line.size()});
    }
    void flush_() override {}
};

} // namespace

void setUpLog(const std::string& level) {
    logQueue(); // made before, and so gone after, what is made here
    spdlog::set_default_logger(
        std::make_shared<spdlog::logger>("cimhost", std::make_shared<LogSink>()));
    spdlog::set_pattern("%Y-%m-%dT%H:%M:%S.%e %l: %v");
    spdlog::set_level(spdlog::level::from_str(level));
    // spdlog would write what goes wrong with a line to standard error by itself, and might wait
    // there.
    spdlog::set_error_handler([](const std::string&) {});
}

void warnOften(const std::string& kind, const std::string& line) { throttle()(kind, line); }

void logText(const std::string& text) {
    std::string shown;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        shown += text::visible(std::string_view(text).substr(begin, end - begin)) + "\n";
        begin = end + 1;
    }
    logQueue().put(std::move(shown));
}

void endLog() noexcept {
    try {
        throttle().tellRest();
    } catch (const std::bad_alloc&) { // lines less
    }
    logQueue().drain(endPatience);
}

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

Throttle::Throttle(std::function<void(const std::string&)> say,
                   std::function<Clock::time_point()> now)
    : _say(std::move(say)), _now(std::move(now)) {}

void Throttle::operator()(const std::string& kind, const std::string& line) {
    const Lock lock(_mutex);
    const Clock::time_point now = _now();
    for (auto& [name, second] : _kinds) {
        if (now - second.began < std::chrono::seconds(1))
            continue;
        tell(name, second);
        second = {now, 0};
    }
    if (++_kinds.try_emplace(kind, Second{now, 0}).first->second.lines <= limits::logLines)
        _say(line);
}

void Throttle::tellRest() {
    const Lock lock(_mutex);
    for (auto& [name, second] : _kinds)
        tell(name, second);
    _kinds.clear();
}

void Throttle::tell(const std::string& kind, Second& second) {
    if (second.lines > limits::logLines)
        _say("(" + std::to_string(second.lines - limits::logLines) +
             " more lines of this kind: " + kind + ")");
}

} // namespace embedded::cimhost
