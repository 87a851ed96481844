#include "cimhost/WireTrace.h"

#include "http/Watched.h"
#include "text/Ascii.h"

#include <cstdio>
#include <fstream>
#include <memory>
#include <mutex>
#include <utility>

namespace embedded::cimhost {
namespace {

std::string requestText(const http::Request& request) {
    std::string text = request.verb + " " + request.target +
                       (request.version >= 11 ? " HTTP/1.1\n" : " HTTP/1.0\n");
    for (const auto& [name, value] : request.fields) {
        const bool secret = text::equalIgnoringCase(name, "Authorization");
        text += name + ": " + (secret ? "(not shown)" : value) + "\n";
    }
    return text + "\n" + request.body;
}

std::string replyText(const http::Reply& reply) {
    std::string text = "HTTP/1.1 " + std::to_string(reply.status) + " " + reply.reason + "\n";
    for (const auto& [name, value] : reply.fields)
        text.append(name).append(value.empty() ? ":" : ": ").append(value).append("\n");
    return text + "\n" + reply.body;
}

class Trace {
  public:
    Trace(const std::string& where, std::function<void(const std::string&)> log)
        : _directory(where == "-" ? "" : where), _log(std::move(log)) {
        if (!_directory.empty())
            std::filesystem::create_directories(_directory);
    }

    unsigned next() {
        const std::lock_guard<std::mutex> lock(_mutex);
        return ++_number;
    }

    void write(unsigned number, const char* what, const std::string& text) {
        if (_directory.empty())
            print(number, what, text);
        else
            store(number, what, text, std::ios::trunc);
    }

    /// What follows a text that was written before.
    void writeMore(unsigned number, const char* what, const std::string& text) {
        if (_directory.empty())
            print(number, (std::string(what) + ", continued,").c_str(), text);
        else
            store(number, what, text, std::ios::app);
    }

  private:
    void print(unsigned number, const char* what, const std::string& text) {
        const std::string all =
            "---- " + std::string(what) + " " + std::to_string(number) + "\n" + text + "\n";
        const std::lock_guard<std::mutex> lock(_mutex);
        std::fwrite(all.data(), 1, all.size(), stderr);
    }

    void store(unsigned number, const char* what, const std::string& text,
               std::ios::openmode mode) {
        const std::string digits = std::to_string(number);
        const std::string padding(digits.size() < 6 ? 6 - digits.size() : 0, '0');
        const std::filesystem::path file = _directory / (padding + digits + "-" + what);
        std::ofstream out(file, std::ios::binary | mode);
        out << text << std::flush;
        if (!out)
            _log("cannot write " + file.string() + " of the wire trace");
    }

    const std::filesystem::path _directory;
    const std::function<void(const std::string&)> _log;
    std::mutex _mutex;
    unsigned _number = 0;
};

} // namespace

http::Handler traced(http::Handler handler, const std::string& where,
                     const std::function<void(const std::string&)>& log) {
    const auto trace = std::make_shared<Trace>(where, log);
    return http::watched(std::move(handler), [trace](const http::Request& request) {
        const unsigned number = trace->next();
        trace->write(number, "request", requestText(request));
        return [trace, number](http::Reply& reply) {
            trace->write(number, "reply", replyText(reply));
            if (!reply.rest)
                return;
            reply.rest = [trace, number, rest = std::move(reply.rest)](std::string& out) {
                const std::size_t before = out.size();
                const bool more = rest(out);
                if (out.size() > before)
                    trace->writeMore(number, "reply", out.substr(before));
                return more;
            };
        };
    });
}

} // namespace embedded::cimhost
