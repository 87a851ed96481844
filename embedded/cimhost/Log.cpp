#include "cimhost/Log.h"

#include "cimhost/LogQueue.h"
#include "cimhost/Throttle.h"
#include "text/Utf8.h"

#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <mutex>
#include <new>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace embedded::cimhost {
namespace {

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

} // namespace embedded::cimhost
