#include "http/Message.h"

#include "text/Ascii.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iomanip>
#include <locale>
#include <sstream>
#include <stdexcept>

namespace embedded::http {
namespace {

constexpr const char* hexadecimal = "0123456789ABCDEF";

bool isUnreserved(char c) {
    return text::isDigit(c) || text::isLetter(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

std::string trimmed(std::string_view text) { return std::string(text::trimmed(text)); }

std::string unquoted(const std::string& text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
        return text.substr(1, text.size() - 2);
    return text;
}

Answer seen(Answer answer, const ReplyWatch& see) {
    if (Reply* reply = std::get_if<Reply>(&answer)) {
        see(*reply);
        return answer;
    }
    Work work = std::get<Work>(std::move(answer));
    std::function<Reply()> late;
    if (work.late)
        late = [late = std::move(work.late), see] {
            Reply reply = late();
            see(reply);
            return reply;
        };
    return Work([make = std::move(work.make), see] { return seen(make(), see); },
                std::move(work.lanes), std::move(late));
}

// A line break inside a field would let whoever chose its text write fields of his own.
const std::string& singleLine(const std::string& text) {
    static constexpr std::string_view breaks("\r\n\0", 3);
    if (text.find_first_of(breaks) != std::string::npos)
        throw std::invalid_argument("a line break or NUL in a header field: " + text);
    return text;
}

} // namespace

const std::string* findField(const Fields& fields, const std::string& name) {
    for (const auto& field : fields)
        if (text::equalIgnoringCase(field.first, name))
            return &field.second;
    return nullptr;
}

Parametrized parametrized(const std::string& text) {
    Parametrized result;
    std::size_t end = text.find(';');
    result.value = unquoted(trimmed(text.substr(0, end)));
    while (end != std::string::npos) {
        const std::size_t begin = end + 1;
        end = text.find(';', begin);
        const std::string parameter = text.substr(begin, end - begin);
        const std::size_t equals = parameter.find('=');
        if (equals != std::string::npos)
            result.parameters.emplace_back(trimmed(parameter.substr(0, equals)),
                                           unquoted(trimmed(parameter.substr(equals + 1))));
    }
    return result;
}

std::string percentDecoded(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        unsigned char byte = 0;
        const char* const digits = text.data() + i + 1;
        const char* const end = std::min(digits + 2, text.data() + text.size());
        if (std::from_chars(digits, end, byte, 16).ptr != digits + 2)
            throw std::invalid_argument("not two hexadecimal digits after % in " + text);
        result += static_cast<char>(byte);
        i += 2;
    }
    return result;
}

std::string percentEncoded(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (isUnreserved(c)) {
            result += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        result += '%';
        result += hexadecimal[byte / 16];
        result += hexadecimal[byte % 16];
    }
    return result;
}

Handler watched(Handler handler, std::function<ReplyWatch(const Request&)> watch) {
    return [handler = std::move(handler), watch = std::move(watch)](Request&& request) -> Answer {
        const ReplyWatch see = watch(request);
        return seen(handler(std::move(request)), see);
    };
}

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
