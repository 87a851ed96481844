#include "RawClient.h"

#include "Certificates.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <csignal>
#include <netinet/in.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <regex>
#include <stdexcept>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace embedded::http::test {
namespace {

constexpr std::chrono::seconds patience{10};

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

ClientTls clientTls(const std::string& certificate, const std::string& key) {
    const ClientTls tls(SSL_CTX_new(TLS_client_method()), SSL_CTX_free);
    if (certificate.empty())
        return tls;
    const auto text = [](const std::string& pem) {
        return std::unique_ptr<BIO, void (*)(BIO*)>(
            BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())), BIO_free_all);
    };
    const std::unique_ptr<X509, void (*)(X509*)> shown(
        PEM_read_bio_X509(text(certificate).get(), nullptr, nullptr, nullptr), X509_free);
    const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> secret(
        PEM_read_bio_PrivateKey(text(key).get(), nullptr, nullptr, nullptr), EVP_PKEY_free);
    if (SSL_CTX_use_certificate(tls.get(), shown.get()) != 1 ||
        SSL_CTX_use_PrivateKey(tls.get(), secret.get()) != 1)
        throw std::runtime_error("no certificate for the client");
    return tls;
}

ClientTls usualTls() { return everythingOverTls() ? clientTls() : nullptr; }

RawClient::RawClient(std::uint16_t port, const char* source, const ClientTls& tls)
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
    if (tls)
        shakeHands(std::shared_ptr<SSL>(SSL_new(tls.get()), SSL_free));
}

void RawClient::shakeHands(std::shared_ptr<ssl_st> tls, ssl_session_st* ticket) {
    std::signal(SIGPIPE, SIG_IGN); // OpenSSL's writes cannot say so
    const timeval time{patience.count(), 0};
    ::setsockopt(_socket, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
    _tls = std::move(tls);
    if (ticket)
        SSL_set_session(_tls.get(), ticket);
    SSL_set_fd(_tls.get(), _socket);
    ERR_clear_error();
    if (SSL_connect(_tls.get()) != 1) {
        const char* const reason = ERR_reason_error_string(ERR_get_error());
        _handshakeError = reason ? reason : "closed";
    }
}

RawClient::~RawClient() {
    if (_socket >= 0)
        ::close(_socket);
}

bool RawClient::send(const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const char* const from = bytes.data() + sent;
        const std::size_t size = bytes.size() - sent;
        ERR_clear_error();
        const ssize_t n = _tls ? SSL_write(_tls.get(), from, static_cast<int>(size))
                               : ::send(_socket, from, size, MSG_NOSIGNAL);
        if (n < 0 || (_tls && n == 0))
            return false;
        sent += static_cast<std::size_t>(n);
    }
    return true;
}

void RawClient::closeSending() {
    if (_tls)
        SSL_shutdown(_tls.get());
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

bool RawClient::closed() { return rest().empty(); }

// Over TLS, something may come that is none of the server's words: tickets.
bool RawClient::hearsNothing() const {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
    char byte = 0;
    while (isReadable(std::chrono::duration_cast<std::chrono::milliseconds>(
        until - std::chrono::steady_clock::now()))) {
        if (!_tls)
            return false;
        const timeval soon{0, 1000};
        const timeval time{patience.count(), 0};
        ::setsockopt(_socket, SOL_SOCKET, SO_RCVTIMEO, &soon, sizeof soon);
        ERR_clear_error();
        const int n = SSL_peek(_tls.get(), &byte, 1);
        ::setsockopt(_socket, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
        if (SSL_get_error(_tls.get(), n) != SSL_ERROR_WANT_READ)
            return false;
    }
    return true;
}

bool RawClient::hasFarewell() const {
    return (SSL_get_shutdown(_tls.get()) & SSL_RECEIVED_SHUTDOWN) != 0;
}

bool RawClient::isReadable(std::chrono::milliseconds time) const {
    if (_tls && SSL_pending(_tls.get()) > 0)
        return true;
    pollfd waiting{_socket, POLLIN, 0};
    return time.count() > 0 && ::poll(&waiting, 1, static_cast<int>(time.count())) > 0;
}

long RawClient::receive(char* bytes, std::size_t size) {
    if (!_tls)
        return ::recv(_socket, bytes, size, 0);
    ERR_clear_error();
    const int n = SSL_read(_tls.get(), bytes, static_cast<int>(size));
    _timedOut = _timedOut || SSL_get_error(_tls.get(), n) == SSL_ERROR_WANT_READ;
    return n;
}

bool RawClient::more() {
    if (!isReadable(patience)) {
        _timedOut = true;
        return false;
    }
    std::array<char, 65536> bytes;
    const long n = receive(bytes.data(), bytes.size());
    if (n <= 0)
        return false;
    _buffered.append(bytes.data(), static_cast<std::size_t>(n));
    return true;
}

} // namespace embedded::http::test
