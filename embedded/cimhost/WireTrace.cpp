#include "cimhost/WireTrace.h"

#include "cimhost/Directory.h"
#include "cimhost/Log.h"
#include "http/Message.h"
#include "text/Ascii.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace embedded::cimhost {
namespace {

// Fields that carry no password, cookie or the like, in lower case. Those of M-POST (RFC 2774
// clause 3) have two digits and a hyphen before.
bool isShown(const std::string& field) {
    constexpr std::string_view shown =
        " accept accept-charset accept-encoding accept-language cache-control cimbatch "
        "cimexport cimexportbatch cimexportmethod cimmethod cimobject cimoperation "
        "cimprotocolversion connection content-encoding content-language content-length "
        "content-range content-type date expect host keep-alive man opt te trailer "
        "transfer-encoding upgrade user-agent via ";
    std::string name = text::lowered(field);
    if (name.size() > 3 && text::isDigit(name[0]) && text::isDigit(name[1]) && name[2] == '-')
        name.erase(0, 3);
    return shown.find(" " + name + " ") != std::string_view::npos;
}

std::string requestText(const http::Request& request) {
    std::string text = request.verb + " " + request.target +
                       (request.version >= 11 ? " HTTP/1.1\n" : " HTTP/1.0\n");
    for (const auto& [name, value] : request.fields)
        text += name + ": " + (isShown(name) ? value : "(not shown)") + "\n";
    return text + "\n" + request.body;
}

std::string replyText(const http::Reply& reply) {
    std::string text = "HTTP/1.1 " + std::to_string(reply.status) + " " + reply.reason + "\n";
    for (const auto& [name, value] : reply.fields)
        text.append(name).append(value.empty() ? ":" : ": ").append(value).append("\n");
    return text + "\n" + reply.body;
}

// One of them is a directory, in which each text is a file of its own; the numbers go on behind
// those of an earlier run.
class Trace {
  public:
    Trace(const std::string& where, std::function<void(const std::string&)> log)
        : _log(std::move(log)) {
        if (where == "-")
            return;
        std::filesystem::create_directories(where);
        _directory.emplace(where);
        for (const auto& file : std::filesystem::directory_iterator(where))
            _number = std::max(_number.load(), numberOf(file.path().filename().string()));
    }

    unsigned next() { return ++_number; }

    /// `follows`: a text that was written before.
    void write(unsigned number, const std::string& what, const std::string& text,
               bool follows = false) {
        const std::string digits = std::to_string(number);
        if (!_directory) {
            logText("---- " + what + (follows ? ", continued, " : " ") + digits + "\n" + text +
                    "\n");
            return;
        }
        const std::string padding(digits.size() < 6 ? 6 - digits.size() : 0, '0');
        const std::string name = padding + digits + "-" + what;
        try {
            if (follows)
                _directory->append(name, text);
            else
                _directory->create(name, text, ownerOnly);
        } catch (const std::system_error& error) {
            _log(std::string(error.what()) + " (wire trace)");
        }
    }

  private:
    static constexpr unsigned ownerOnly = 0600;

    static unsigned numberOf(const std::string& name) {
        unsigned number = 0;
        const char* const end = name.data() + name.size();
        const auto [stop, error] = std::from_chars(name.data(), end, number);
        return error == std::errc() && stop != end && *stop == '-' ? number : 0;
    }

    std::optional<Directory> _directory;
    const std::function<void(const std::string&)> _log;
    std::atomic<unsigned> _number{0};
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
                    trace->write(number, "reply", out.substr(before), true);
                return more;
            };
        };
    });
}

} // namespace embedded::cimhost
