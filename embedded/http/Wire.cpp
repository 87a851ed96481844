#include "http/Wire.h"

#include <array>
#include <charconv>
#include <iomanip>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace embedded::http {
namespace {

// A line break inside a field would let whoever chose its text write fields of his own.
const std::string& singleLine(const std::string& text) {
    static constexpr std::string_view breaks("\r\n\0", 3);
    if (text.find_first_of(breaks) != std::string::npos)
        throw std::invalid_argument("a line break or NUL in a header field: " + text);
    return text;
}

} // namespace

std::string wireHeader(const Reply& reply, Persistence persistence, std::string_view date) {
    std::string text;
    text.reserve(512);
    const auto add = [&text](const std::string& name, const std::string& value) {
        text.append(singleLine(name)).append(value.empty() ? ":" : ": ");
        text.append(singleLine(value)).append("\r\n");
    };
    text.append("HTTP/1.1 ").append(std::to_string(reply.status)).append(" ");
    text.append(singleLine(reply.reason)).append("\r\n");
    if (!date.empty())
        add("Date", std::string(date));
    for (const auto& field : reply.fields)
        add(field.first, field.second);
    const bool hasLength = findField(reply.fields, "content-length") != nullptr;
    if (reply.rest && hasLength)
        throw std::invalid_argument("a content length beside a body that comes in pieces");
    if (reply.rest)
        add("Transfer-Encoding", "chunked");
    else if (!hasLength)
        add("content-length", std::to_string(reply.body.size()));
    if (persistence == Persistence::Close)
        add("Connection", "close");
    else if (persistence == Persistence::KeepAlive)
        add("Connection", "keep-alive");
    return text.append("\r\n");
}

std::string chunkBegin(std::size_t size) {
    std::array<char, 2 * sizeof size> digits;
    char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), size, 16).ptr;
    return std::string(digits.data(), end) + "\r\n";
}

Reply emptyReply(unsigned status, const std::string& reason, Fields fields) {
    return Reply{status, reason, std::move(fields)};
}

std::string authority(const std::string& host, std::uint16_t port) {
    const bool v6 = host.find(':') != std::string::npos;
    return (v6 ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

std::string httpDate(std::time_t time) {
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::ostringstream text;
    text.exceptions(std::ios::badbit |
                    std::ios::failbit); // or it cuts off what it has no memory for
    text.imbue(std::locale::classic());
    text << std::put_time(&parts, "%a, %d %b %Y %H:%M:%S GMT");
    return text.str();
}

std::string thrownText() {
    try {
        throw;
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "unknown exception";
    }
}

} // namespace embedded::http
