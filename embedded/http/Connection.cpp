#include "http/Connection.h"

#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/read.hpp>

#include <sstream>
#include <string_view>

namespace embedded::http {

namespace asio = boost::asio;
namespace beast = boost::beast;

namespace {

constexpr std::size_t readSize = 4096;
// How long an answered client is listened to after the last reply. Closing while its bytes are
// still coming in makes the kernel reset the connection, and the reply may never be seen.
constexpr std::chrono::seconds lingerTime{2};
// How the ClientHello of a TLS client begins: a handshake record of a version 3.x (RFC 8446 clause
// 5.1).
constexpr std::string_view tlsRecord = "\x16\x03";

std::string text(beast::string_view view) {
    return std::string(view.data(), view.size());
}

// Every reply says when it was made (RFC 9110 clause 6.6.1).
Reply dated(Reply reply) {
    reply.fields.emplace(reply.fields.begin(), "Date", httpDate(std::time(nullptr)));
    return reply;
}

template <class Message>
Request request(Message&& message) {
    Request result;
    result.verb = text(message.method_string());
    result.target = text(message.target());
    result.version = message.version();
    for (const auto& field : message)
        result.fields.emplace_back(text(field.name_string()), text(field.value()));
    result.body = std::move(message.body());
    return result;
}

} // namespace

Connection::Connection(asio::ip::tcp::socket socket, ConnectionOwner& owner)
    : _socket(std::move(socket)), _timer(_socket.get_executor()), _owner(owner) {
    Error error;
    const auto peer = _socket.remote_endpoint(error);
    std::ostringstream name;
    if (error)
        name << "a client";
    else
        name << peer;
    _peer = name.str();
}

void Connection::start() {
    awaitRequest();
}

void Connection::refuse(const Reply& reply) {
    _owner.log(_peer + ": " + std::to_string(reply.status) + " " + reply.reason);
    _persistence = Persistence::Close;
    respond(reply);
}

void Connection::stop() {
    if (_state == State::Idle || _state == State::Reading)
        close();
}

void Connection::awaitRequest() {
    if (_owner.stopping()) {
        close();
        return;
    }
    // Empty lines before a request are what some clients send after a body (RFC 9112 clause 2.2).
    while (_in.size() != 0) {
        const auto* const bytes = static_cast<const char*>(_in.cdata().data());
        const char first = bytes[0];
        if (first == tlsRecord[0] && _in.size() < tlsRecord.size())
            break; // the next byte tells
        if (std::string_view(bytes, _in.size()).substr(0, tlsRecord.size()) == tlsRecord) {
            _owner.log(_peer + ": this looks like TLS, but this port speaks plain HTTP; use "
                               "http://");
            close();
            return;
        }
        if (first != '\r' && first != '\n') {
            readHeader();
            return;
        }
        _in.consume(1);
    }
    _state = State::Idle;
    arm(_owner.options().idleTimeout, &Connection::close);
    _socket.async_read_some(_in.prepare(readSize),
                            [self = shared_from_this()](const Error& error, std::size_t size) {
                                if (self->_state == State::Closed)
                                    return;
                                if (error) {
                                    self->close();
                                    return;
                                }
                                self->_in.commit(size);
                                self->awaitRequest();
                            });
}

auto Connection::then(Step next) {
    return [self = shared_from_this(), next](const Error& error, std::size_t) {
        if (self->_state == State::Closed)
            return;
        if (self->_timedOut)
            self->reject(408, "Request Timeout", "the request did not come to its end in time");
        else if (error)
            self->readingFailed(error);
        else
            (*self.*next)();
    };
}

void Connection::readHeader() {
    _state = State::Reading;
    _parser.emplace();
    _parser->header_limit(_owner.options().headerLimit);
    _parser->body_limit(_owner.options().bodyLimit);
    arm(_owner.options().requestTimeout, &Connection::requestTimedOut);
    beast::http::async_read_header(_socket, _in, *_parser, then(&Connection::headerRead));
}

void Connection::headerRead() {
    const auto expectation = _parser->get().find(beast::http::field::expect);
    if (expectation == _parser->get().end() || _parser->get().version() < 11)
        readBody();
    else if (beast::iequals(expectation->value(), "100-continue"))
        sendContinue();
    else
        reject(417, "Expectation Failed", "unknown expectation: " + text(expectation->value()));
}

void Connection::sendContinue() {
    static const std::string interim = "HTTP/1.1 100 Continue\r\n\r\n";
    if (_parser->is_done()) // there is no body that could be waiting
        readBody();
    else
        asio::async_write(_socket, asio::buffer(interim), then(&Connection::readBody));
}

void Connection::readBody() {
    if (_parser->is_done())
        handle();
    else
        beast::http::async_read(_socket, _in, *_parser, then(&Connection::handle));
}

void Connection::handle() {
    disarm();
    _state = State::Handling;
    if (!_parser->keep_alive())
        _persistence = Persistence::Close;
    else if (_parser->get().version() < 11)
        _persistence = Persistence::KeepAlive;
    else
        _persistence = Persistence::Silent;
    Request received = request(_parser->release());
    _parser.reset();
    _withBody = received.verb != "HEAD";
    _owner.handle(std::move(received),
                  [self = shared_from_this()](Reply reply) { self->respond(std::move(reply)); });
}

void Connection::respond(Reply reply) {
    if (_owner.stopping())
        _persistence = Persistence::Close;
    try {
        _out = wireText(dated(std::move(reply)), _persistence, _withBody);
    } catch (const std::invalid_argument& error) {
        _owner.log(_peer + ": reply not sent: " + error.what());
        _out = wireText(dated(emptyReply(500, "Internal Server Error")), _persistence);
    }
    _written = 0;
    write();
}

void Connection::reject(unsigned status, const std::string& reason, const std::string& why) {
    _owner.log(_peer + ": " + std::to_string(status) + " " + reason + ": " + why);
    _persistence = Persistence::Close;
    respond(emptyReply(status, reason));
}

// Piece by piece, so that the time runs against a client that takes nothing, not against a long
// reply.
void Connection::write() {
    _state = State::Writing;
    arm(_owner.options().requestTimeout, &Connection::close);
    _socket.async_write_some(asio::buffer(_out) + _written,
                             [self = shared_from_this()](const Error& error, std::size_t size) {
                                 if (self->_state == State::Closed)
                                     return;
                                 self->_written += size;
                                 if (error)
                                     self->close();
                                 else if (self->_written < self->_out.size())
                                     self->write();
                                 else if (self->_persistence == Persistence::Close)
                                     self->linger();
                                 else
                                     self->awaitRequest();
                             });
}

void Connection::linger() {
    _state = State::Lingering;
    Error ignored;
    _socket.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
    arm(lingerTime, &Connection::close);
    discard();
}

void Connection::discard() {
    _in.clear();
    _socket.async_read_some(_in.prepare(readSize),
                            [self = shared_from_this()](const Error& error, std::size_t) {
                                if (self->_state == State::Closed)
                                    return;
                                if (error)
                                    self->close();
                                else
                                    self->discard();
                            });
}

void Connection::close() {
    if (_state == State::Closed)
        return;
    _state = State::Closed;
    disarm();
    Error ignored;
    _socket.close(ignored);
    _owner.closed(*this);
}

void Connection::readingFailed(const Error& error) {
    static const Error sample = beast::http::make_error_code(beast::http::error::end_of_stream);
    if (error.category() != sample.category()) { // the connection is gone, nobody is to be told
        close();
        return;
    }
    if (error == beast::http::make_error_code(beast::http::error::header_limit))
        reject(431, "Request Header Fields Too Large", error.message());
    else if (error == beast::http::make_error_code(beast::http::error::body_limit))
        reject(413, "Request Entity Too Large", error.message());
    else
        reject(400, "Bad Request", error.message());
}

void Connection::arm(std::chrono::steady_clock::duration time, Step expired) {
    const std::uint64_t armed = ++_armed;
    _timer.expires_after(time);
    _timer.async_wait([self = shared_from_this(), armed, expired](const Error& error) {
        if (!error && armed == self->_armed && self->_state != State::Closed)
            (*self.*expired)();
    });
}

void Connection::disarm() {
    ++_armed;
    _timer.cancel();
}

// Cancelling what is being waited for ends in then(), where the client is told.
void Connection::requestTimedOut() {
    _timedOut = true;
    Error ignored;
    _socket.cancel(ignored);
}

} // namespace embedded::http
