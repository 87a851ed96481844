#include "http/Wire.h"

#include <iomanip>
#include <locale>
#include <sstream>
#include <stdexcept>

namespace embedded::http {
namespace {

// A line break inside a field would let whoever chose its text write fields of his own.
const std::string& singleLine(const std::string& text) {
    if (text.find_first_of(std::string("\r\n\0", 3)) != std::string::npos)
        throw std::invalid_argument("a line break or NUL in a header field: " + text);
    return text;
}

} // namespace

std::string wireText(const Reply& reply, Persistence persistence, bool withBody) {
    std::string text =
        "HTTP/1.1 " + std::to_string(reply.status) + " " + singleLine(reply.reason) + "\r\n";
    const auto add = [&text](const std::string& name, const std::string& value) {
        text += singleLine(name) + (value.empty() ? ":" : ": ") + singleLine(value) + "\r\n";
    };
    for (const auto& field : reply.fields)
        add(field.first, field.second);
    if (!findField(reply.fields, "content-length"))
        add("content-length", std::to_string(reply.body.size()));
    if (persistence == Persistence::Close)
        add("Connection", "close");
    else if (persistence == Persistence::KeepAlive)
        add("Connection", "keep-alive");
    text += "\r\n";
    if (withBody)
        text += reply.body;
    return text;
}

Reply emptyReply(unsigned status, const std::string& reason, Fields fields) {
    return Reply{status, reason, std::move(fields), {}};
}

std::string httpDate(std::time_t time) {
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::put_time(&parts, "%a, %d %b %Y %H:%M:%S GMT");
    return text.str();
}

} // namespace embedded::http
