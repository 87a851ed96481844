#include "RawClient.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <regex>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace embedded::http::test {
namespace {

constexpr int patience = 10000; // milliseconds

// Replaces the fields Date that are well-formed.
std::string withoutTimes(std::string replies) {
    static const std::regex time(
        "[A-Z][a-z]{2}, \\d{2} [A-Z][a-z]{2} \\d{4} \\d{2}:\\d{2}:\\d{2} GMT");
    const std::string field = "\r\nDate: ";
    for (std::size_t at = 0; (at = replies.find(field, at)) != std::string::npos; ++at) {
        const std::size_t begin = at + field.size();
        const std::size_t end = replies.find("\r\n", begin);
        if (std::regex_match(replies.substr(begin, end - begin), time))
            replies.replace(begin, end - begin, "now");
    }
    return replies;
}

} // namespace

const std::string date = "Date: now\r\n";

RawClient::RawClient(std::uint16_t port, const char* source)
    : _socket(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in own{};
    own.sin_family = AF_INET;
    own.sin_addr.s_addr = ::inet_addr(source);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(_socket, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0 ||
        ::connect(_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int error = errno;
        ::close(_socket);
        throw std::system_error(error, std::generic_category(), "connect");
    }
}

RawClient::~RawClient() {
    if (_socket >= 0)
        ::close(_socket);
}

bool RawClient::send(const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t n = ::send(_socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (n < 0)
            return false;
        sent += static_cast<std::size_t>(n);
    }
    return true;
}

void RawClient::closeSending() {
    ::shutdown(_socket, SHUT_WR);
}

void RawClient::reset() {
    const linger atOnce{1, 0};
    ::setsockopt(_socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    ::close(_socket);
    _socket = -1;
}

std::string RawClient::reply(bool withBody) {
    std::size_t end = 0;
    while ((end = _buffered.find("\r\n\r\n")) == std::string::npos)
        if (!more())
            return withoutTimes(read(_buffered.size()));
    std::size_t size = end + 4;
    const std::size_t length = _buffered.find("content-length: ");
    if (withBody && length < end)
        size += std::stoul(_buffered.substr(length + 16));
    return withoutTimes(read(size));
}

std::string RawClient::rest() {
    while (more()) {
    }
    return withoutTimes(read(_buffered.size())) + (_timedOut ? "(timeout)" : "");
}

std::string RawClient::read(std::size_t size) {
    while (_buffered.size() < size && more()) {
    }
    const std::string result = _buffered.substr(0, size);
    _buffered.erase(0, result.size());
    return result;
}

bool RawClient::closed() {
    return rest().empty();
}

bool RawClient::hearsNothing() const {
    pollfd waiting{_socket, POLLIN, 0};
    return ::poll(&waiting, 1, 100) == 0;
}

bool RawClient::more() {
    pollfd waiting{_socket, POLLIN, 0};
    if (::poll(&waiting, 1, patience) <= 0) {
        _timedOut = true;
        return false;
    }
    std::array<char, 65536> bytes;
    const ssize_t n = ::recv(_socket, bytes.data(), bytes.size(), 0);
    if (n <= 0)
        return false;
    _buffered.append(bytes.data(), static_cast<std::size_t>(n));
    return true;
}

} // namespace embedded::http::test
