#include "http/Connection.h"

#include "text/Ascii.h"

#include <boost/asio/post.hpp>
#include <boost/asio/ssl/error.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/buffer_traits.hpp>
#include <boost/beast/http/error.hpp>

#include <algorithm>
#include <charconv>
#include <ctime>
#include <sstream>
#include <stdexcept>
#include <sys/socket.h>
#include <utility>

namespace embedded::http {

namespace asio = boost::asio;
namespace beast = boost::beast;

namespace {

// What is read at once: of a header, and of a body, which may be long.
constexpr std::size_t readSize = 4096;
constexpr std::size_t bodyReadSize = 65536;
// How the ClientHello of a TLS client begins: a handshake record of a version 3.x (RFC 8446 clause
// 5.1).
constexpr std::string_view tlsRecord = "\x16\x03";
// The end of a chunk, and the chunk that ends a body (RFC 9112 clause 7.1).
constexpr std::string_view chunkEnd = "\r\n";
constexpr std::string_view lastChunk = "0\r\n\r\n";

// Every reply says when it was made (RFC 9110 clause 6.6.1). Nothing here has a destructor: the C
// library ends the process when it has no memory to register one for a thread.
std::string_view now() {
    thread_local std::time_t time = 0;
    thread_local std::array<char, 29> text{}; // as long as a Date is
    const std::time_t present = std::time(nullptr);
    if (present != time) {
        httpDate(present).copy(text.data(), text.size());
        time = present;
    }
    return {text.data(), text.size()};
}

// Over TLS, the end of the socket may come without having been said there.
bool isEnd(const beast::error_code& error) {
    return error == asio::error::eof || error == asio::ssl::error::stream_truncated;
}

// The first line of a chunk of `size` bytes.
std::string chunkBegin(std::size_t size) {
    std::array<char, 2 * sizeof size> digits;
    char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), size, 16).ptr;
    return std::string(digits.data(), end) + "\r\n";
}

// Why a request is refused, and the reply to it.
struct Refusal {
    unsigned status;
    std::string reason; // of the status line
    std::string why;    // for the log
};

Refusal badRequest(const std::string& why) { return {400, "Bad Request", why}; }

// The members of all fields named `name` (case ignored), which are lists with commas (RFC 9110
// clause 5.6.1), trimmed; empty ones are left out.
std::vector<std::string> listOf(const Fields& fields, const std::string& name) {
    std::vector<std::string> members;
    for (const auto& field : fields) {
        if (!text::equalIgnoringCase(field.first, name))
            continue;
        for (std::size_t begin = 0; begin <= field.second.size();) {
            const std::size_t end = std::min(field.second.find(',', begin), field.second.size());
            const auto member =
                text::trimmed(std::string_view(field.second).substr(begin, end - begin));
            if (!member.empty())
                members.emplace_back(member);
            begin = end + 1;
        }
    }
    return members;
}

// Refuses requests whose end or host two servers could read differently: what a proxy takes for a
// body, the next server might take for a request. So it checks the fields that give the length of
// the body (RFC 9112 clause 6.3) or the host (clause 3.2). A body needs a Content-Length, or
// "chunked" as its only transfer coding. Beast's parser has refused before: a Content-Length that
// is no number, several different ones, and one together with "chunked".
std::optional<Refusal> framingFault(const Request& request) {
    const auto hosts =
        std::count_if(request.fields.begin(), request.fields.end(), [](const auto& field) {
            return text::equalIgnoringCase(field.first, "Host");
        });
    if (hosts > 1)
        return badRequest("more than one Host field");
    if (!findField(request.fields, "Transfer-Encoding"))
        return std::nullopt;
    if (request.version < 11)
        return badRequest("Transfer-Encoding in a request of HTTP/1.0");
    if (findField(request.fields, "Content-Length"))
        return badRequest("Transfer-Encoding and Content-Length");
    const std::vector<std::string> codings = listOf(request.fields, "Transfer-Encoding");
    const auto isChunked = [](const std::string& coding) {
        return text::equalIgnoringCase(coding, "chunked");
    };
    if (codings.empty() || !isChunked(codings.back()))
        return badRequest(
            "the last transfer coding is not chunked, so nothing says where the body ends");
    if (std::count_if(codings.begin(), codings.end(), isChunked) > 1)
        return badRequest("chunked twice");
    if (codings.size() > 1)
        return Refusal{501, "Not Implemented", "unknown transfer coding: " + codings.front()};
    return std::nullopt;
}

// What Asio calls for a connection when something is done. Over TLS it takes several steps, and may
// lose this between two of them for want of memory; the connection would wait for ever.
template <class Then>
class Continuation {
  public:
    Continuation(std::shared_ptr<Connection> connection, Then then)
        : _connection(std::move(connection)), _then(std::move(then)) {}
    Continuation(Continuation&&) noexcept = default;
    Continuation& operator=(Continuation&&) = delete;
    ~Continuation() {
        if (_connection)
            _connection->lost();
    }
    template <class... Results>
    void operator()(const Results&... results) {
        const std::shared_ptr<Connection> connection = std::move(_connection);
        connection->attempt([&] { _then(results...); });
    }

  private:
    std::shared_ptr<Connection> _connection;
    Then _then;
};

} // namespace

Connection::Connection(Socket socket, const TlsContext* tls, ConnectionOwner& owner)
    : _stream(std::move(socket), tls), _timer(_stream.get_executor()), _owner(owner) {
    Error error;
    const auto peer = _stream.socket().remote_endpoint(error);
    std::ostringstream name;
    name.exceptions(std::ios::badbit | std::ios::failbit);
    if (error) {
        name << "a client";
    } else {
        name << peer;
        _peerAddress = peer.address().to_string();
    }
    _peer = name.str();
}

void Connection::failed(std::string (*why)()) noexcept {
    try {
        _owner.log("connection lost", _peer + ": connection closed: " + why());
    } catch (...) { // no memory to say so
    }
    close();
}

void Connection::lost() noexcept {
    // Not tested: Asio keeps the memory of one step for the next, and seldom needs more.
    if (_state != State::Closed)
        failed([] { return std::string("out of memory"); });
}

void Connection::start() {
    if (_stream.isSecure())
        waitFor(Waiting::ForTheRest);
    secure(_owner.options().requestTimeout, &Connection::awaitRequest);
}

// Does `next` when the handshake is done, which is to be in `time`; without TLS, now.
void Connection::secure(Clock::duration time, Step next) {
    if (!_stream.isSecure()) {
        (this->*next)();
        return;
    }
    _state = State::Greeting;
    within(time, &Connection::handshakeTimedOut);
    _stream.async_handshake(Continuation(shared_from_this(), [this, next](const Error& error) {
        if (_state == State::Closed)
            return;
        if (error) {
            handshakeFailed(error);
            return;
        }
        _certificateName = _stream.peerName();
        (this->*next)();
    }));
}

// Where OpenSSL has told the client why, it is given the time to hear it.
void Connection::handshakeFailed(const Error& error) {
    if (Stream::isPlainHttp(error))
        _owner.log("plain HTTP on a TLS port",
                   _peer + ": this looks like plain HTTP, but this port speaks TLS; use https://");
    else
        _owner.log("TLS handshake",
                   _peer + ": TLS handshake failed: " + _stream.handshakeProblem(error));
    if (error.category() != asio::error::get_ssl_category()) {
        close();
        return;
    }
    _waiting = Waiting::ForNothing;
    linger();
}

void Connection::handshakeTimedOut() {
    _owner.log("TLS handshake", _peer + ": TLS handshake failed: it was not done in time");
    close();
}

void Connection::refuse(Reply reply) {
    const std::string said = std::to_string(reply.status) + " " + reply.reason;
    _owner.log(said, _peer + ": " + said);
    _persistence = Persistence::Close;
    _reply = std::move(reply);
    secure(_owner.options().refusalTime, &Connection::sendRefusal);
}

void Connection::sendRefusal() { respond(std::move(_reply)); }

void Connection::giveWay() {
    // Not tested: its request has come between the choice, on another thread, and this.
    if (_state != State::Greeting && _state != State::Idle && _state != State::Reading) {
        _givingWay = false;
        return;
    }
    _owner.log("gave way",
               _peer + ": closed, as too many are connected and this one waited longest");
    if (_state == State::Reading)
        requestTimedOut();
    else
        close();
}

void Connection::waitFor(Waiting what) {
    _waitingSince = Clock::now().time_since_epoch().count(); // before others see that it waits
    _waiting = what;
}

void Connection::stop() {
    if (_state == State::Greeting || _state == State::Idle || _state == State::Reading)
        close();
}

void Connection::awaitRequest() {
    _state = State::Idle; // nothing is being written: close() tells a TLS client so
    if (_owner.stopping()) {
        close();
        return;
    }
    // Empty lines before a request are what some clients send after a body (RFC 9112 clause 2.2).
    while (_in.size() != 0) {
        const auto* const bytes = static_cast<const char*>(_in.cdata().data());
        const char first = bytes[0];
        const bool plain = !_stream.isSecure();
        if (plain && first == tlsRecord[0] && _in.size() < tlsRecord.size())
            break; // the next byte tells
        if (plain && std::string_view(bytes, _in.size()).substr(0, tlsRecord.size()) == tlsRecord) {
            _owner.log("TLS on a plain port",
                       _peer + ": this looks like TLS, but this port speaks plain HTTP; use "
                               "http://, or the port that speaks TLS");
            _waiting = Waiting::ForNothing;
            linger();
            return;
        }
        if (first != '\r' && first != '\n') {
            beginRequest();
            return;
        }
        _in.consume(1);
    }
    waitFor(Waiting::ForARequest);
    if (_in.capacity() > readSize)
        _in.shrink_to_fit(); // a connection that waits keeps no large buffer
    within(_owner.options().idleTimeout, &Connection::close);
    read();
}

void Connection::read() {
    const bool inBody = _parser && _parser->is_header_done();
    const auto room = _in.prepare(inBody ? bodyReadSize : readSize);
    Continuation then(shared_from_this(),
                      [this](const Error& error, std::size_t size) { bytesRead(error, size); });
    if (_state == State::Lingering) // what it says does not matter
        _stream.socket().async_read_some(room, std::move(then));
    else
        _stream.async_read_some(room, std::move(then));
}

void Connection::bytesRead(const Error& error, std::size_t size) {
    if (_state == State::Closed)
        return;
    if (_timedOut && _state == State::Reading) {
        reject(408, "Request Timeout", "the request did not come to its end in time");
    } else if (isEnd(error) && _state == State::Reading) {
        Error cutOff;
        _parser->put_eof(cutOff);
        readingFailed(cutOff);
    } else if (error) {
        close();
    } else if (_state == State::Lingering) {
        _in.clear();
        read();
    } else {
        _in.commit(size);
        if (_state == State::Idle)
            awaitRequest();
        else
            parse();
    }
}

void Connection::beginRequest() {
    _state = State::Reading;
    waitFor(Waiting::ForTheRest);
    _taken = 0;
    _parser.emplace();
    _parser->header_limit(_owner.options().headerLimit);
    _parser->body_limit(_owner.options().bodyLimit);
    within(_owner.options().requestTimeout, &Connection::requestTimedOut);
    parse();
}

void Connection::parse() {
    while (!_parser->is_done()) {
        if (_in.size() == 0) {
            read();
            return;
        }
        const bool inHeader = !_parser->is_header_done();
        Error error;
        const std::size_t taken = _parser->put(_in.data(), error);
        _in.consume(taken);
        _taken += taken;
        // The parser bounds the body, but of the header only what it has not taken yet, and neither
        // the lines that begin chunks nor trailers.
        const Options& options = _owner.options();
        const std::size_t header =
            inHeader ? _taken + (_parser->is_header_done() ? 0 : _in.size()) : _in.size();
        const bool bounded = inHeader || error == beast::http::error::need_more;
        if (bounded && header > options.headerLimit)
            error = beast::http::error::header_limit;
        else if (_taken > options.headerLimit + options.bodyLimit)
            error = beast::http::error::body_limit;
        if (!account(_taken)) {
            reject(503, "Service Unavailable", "too many bytes wait to be sent or handled");
            return;
        }
        if (error == beast::http::error::need_more) {
            read();
            return;
        }
        if (error) {
            readingFailed(error);
            return;
        }
        // What has no fault and needs no more has all of its header.
        if (inHeader && (refusesFraming() || holdForExpectation()))
            return;
    }
    handle();
}

// Has the owner know that `bytes` are kept here. False: they are too many, with those of others.
bool Connection::account(std::size_t bytes) {
    const auto all = static_cast<std::int64_t>(bytes);
    if (!_owner.hold(all - _held))
        return false;
    _held = all;
    return true;
}

// The header is there. Whether it is refused for what it says of the body.
bool Connection::refusesFraming() {
    const std::optional<Refusal> fault = framingFault(_parser->request());
    if (fault)
        reject(fault->status, fault->reason, fault->why);
    return fault.has_value();
}

// The header is there. Whether what it expects (RFC 9110 clause 10.1.1) is to be seen to before the
// body is read.
bool Connection::holdForExpectation() {
    static const std::string interim = "HTTP/1.1 100 Continue\r\n\r\n";
    const Request& request = _parser->request();
    const std::string* expectation = findField(request.fields, "Expect");
    if (!expectation || request.version < 11)
        return false;
    if (!text::equalIgnoringCase(*expectation, "100-continue")) {
        reject(417, "Expectation Failed", "unknown expectation: " + *expectation);
        return true;
    }
    if (_parser->is_done()) // there is no body that could be waiting
        return false;
    asio::async_write(_stream, asio::buffer(interim),
                      Continuation(shared_from_this(), [this](const Error& error, std::size_t) {
                          // Not tested: the kernel takes so few bytes at once, so nothing happens
                          // meanwhile.
                          if (error || _timedOut)
                              bytesRead(error, 0);
                          // Not tested: as above.
                          else if (_state == State::Reading)
                              parse();
                      }));
    return true;
}

void Connection::handle() {
    disarm();
    _state = State::Handling;
    _waiting = Waiting::ForNothing;
    Request request = std::move(_parser->request());
    request.peer = {_peerAddress, _stream.isSecure(), _certificateName};
    _chunks = request.version >= 11;
    if (!_parser->keep_alive())
        _persistence = Persistence::Close;
    else
        _persistence = _chunks ? Persistence::Silent : Persistence::KeepAlive;
    _parser.reset();
    _withBody = request.verb != "HEAD";
    _asked.assign(request.verb).append(" ").append(request.target);
    _owner.handle(std::move(request), *this);
}

void Connection::respond(Reply reply) {
    // Not tested: the server stops, and has closed it while somebody was at work for it.
    if (_state == State::Closed)
        return;
    if (reply.status == 0) { // Not tested: here; without memory for a refusal, see tests/faults
        close();
        return;
    }
    _reply = std::move(reply);
    if (_reply.rest && !_chunks)
        gather();
    else
        send();
}

// A piece at a turn, so that other connections have theirs.
void Connection::gather() {
    const std::size_t limit = _owner.options().wholeReplyLimit;
    try {
        if (!_reply.rest(_reply.body))
            _reply.rest = nullptr;
    } catch (...) {
        _owner.log("500", "500 for " + _asked + ": " + thrownText());
        _reply = Reply{500, "Internal Server Error"};
    }
    if (!account(_taken + _reply.body.size())) {
        _owner.log("503", "503 for " + _asked + ": too many bytes wait to be sent or handled");
        _reply = Reply{503, "Service Unavailable", {{"Retry-After", "1"}}};
    }
    if (_reply.body.size() > limit) {
        _owner.log("500", "500 for " + _asked + ": more than " + std::to_string(limit) +
                              " bytes for a client that has to have them whole (HTTP/1.0)");
        _reply = Reply{500, "Internal Server Error"};
    }
    if (_reply.rest)
        later(&Connection::gather);
    else
        send();
}

void Connection::send() {
    if (_owner.stopping())
        _persistence = Persistence::Close;
    try {
        _head = wireHeader(_reply, _persistence, now());
    } catch (const std::invalid_argument& error) {
        _owner.log("reply not sent", _peer + ": reply not sent: " + error.what());
        _reply = Reply{500, "Internal Server Error"};
        _head = wireHeader(_reply, _persistence, now());
    }
    if (!_withBody) {
        _reply.body.clear();
        _reply.rest = nullptr;
    }
    sendPiece(_reply.rest ? chunkEnd : std::string_view());
}

// Writes _head and _reply.body from where they are; as a chunk when it has an end. An empty chunk
// would be the last one.
void Connection::sendPiece(std::string_view end) {
    if (_reply.body.empty())
        end = {};
    else if (!end.empty())
        _head += chunkBegin(_reply.body.size());
    _out = Out({asio::buffer(_head), asio::buffer(_reply.body), asio::buffer(end)});
    write();
}

void Connection::nextPiece() {
    _head.clear();
    _reply.body.clear();
    bool more = false;
    try {
        more = _reply.rest(_reply.body);
    } catch (...) {
        _owner.log("reply cut off", "reply cut off, " + _asked + ": " + thrownText());
        _persistence = Persistence::Close;
        linger();
        return;
    }
    if (more && _reply.body.empty()) {
        later(&Connection::nextPiece);
        return;
    }
    if (!more) {
        letReplyGo();
        _head = lastChunk;
    }
    sendPiece(chunkEnd);
}

// Some bytes after the other, so that the time runs against a client that takes too little in it,
// not against a long reply.
void Connection::write() {
    if (_state != State::Writing || _sent >= _owner.options().leastTaken) {
        _sent = 0;
        within(_owner.options().requestTimeout, &Connection::close);
    }
    _state = State::Writing;
    _stream.async_write_some(
        _out, Continuation(shared_from_this(), [this](const Error& error, std::size_t size) {
            if (_state == State::Closed)
                return;
            _out.consume(size);
            _sent += size;
            if (error)
                close();
            else if (beast::buffer_bytes(_out) != 0)
                write();
            else
                written();
        }));
}

void Connection::written() {
    if (_reply.rest) {
        nextPiece();
        return;
    }
    letReplyGo();
    if (_persistence == Persistence::Close)
        linger();
    else
        awaitRequest();
}

void Connection::reject(unsigned status, const std::string& reason, const std::string& why) {
    const std::string said = std::to_string(status) + " " + reason;
    _owner.log(said, _peer + ": " + said + ": " + why);
    _persistence = Persistence::Close;
    _waiting = Waiting::ForNothing;
    respond(Reply{status, reason});
}

// The client is listened to for a while after the last reply. Closing while its bytes are still
// coming in makes the kernel reset the connection, and the reply may never be seen.
void Connection::linger() {
    _state = State::Lingering;
    letReplyGo();
    _parser.reset();
    within(_owner.options().refusalTime, &Connection::close);
    _in.clear();
    sendEnd(_stream.farewell());
}

void Connection::sendEnd(std::string_view farewell) {
    const auto sent = [this](const Error&, std::size_t) {
        if (_state == State::Closed)
            return;
        Error ignored;
        _stream.socket().shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
        read();
    };
    if (farewell.empty())
        sent({}, 0);
    else
        asio::async_write(_stream.socket(), asio::buffer(farewell),
                          Continuation(shared_from_this(), sent));
}

void Connection::close() noexcept {
    // Not tested: two reasons at once, such as the end of the server and that of the client.
    if (_state == State::Closed)
        return;
    // Where nothing else is being written, the client is told that nothing is missing, if it goes
    // at once.
    if (_state == State::Idle || _state == State::Reading) {
        const std::string_view farewell = _stream.farewell();
        if (!farewell.empty())
            ::send(_stream.socket().native_handle(), farewell.data(), farewell.size(),
                   MSG_DONTWAIT | MSG_NOSIGNAL);
    }
    _state = State::Closed;
    letReplyGo();
    Error ignored;
    _timer.cancel(ignored);
    _stream.socket().close(ignored);
    _owner.closed(*this);
}

// Its memory, too, which an assignment of an empty one would keep.
void Connection::letReplyGo() noexcept {
    Reply none;
    std::swap(_reply, none);
    _owner.hold(-std::exchange(_held, 0));
}

void Connection::readingFailed(const Error& error) {
    if (error == beast::http::error::header_limit)
        reject(431, "Request Header Fields Too Large", error.message());
    else if (error == beast::http::error::body_limit)
        reject(413, "Request Entity Too Large", error.message());
    else
        reject(400, "Bad Request", error.message());
}

void Connection::later(Step next) {
    asio::post(
        _stream.get_executor(),
        [self = shared_from_this(), next] {
            // Not tested: the server has closed it between two pieces.
            if (self->_state != State::Closed)
                self->attempt([&] { (*self.*next)(); });
        });
}

// The timer is left alone while it ends before the deadline does: most deadlines are replaced by
// later ones long before they are over.
void Connection::within(Clock::duration time, Step expired) {
    _deadline = Clock::now() + time;
    _expired = expired;
    if (!_timing || _deadline < _timer.expiry())
        awaitDeadline();
}

void Connection::disarm() { _deadline = Clock::time_point::max(); }

void Connection::awaitDeadline() {
    _timing = true;
    _timer.expires_at(_deadline);
    _timer.async_wait([self = shared_from_this()](const Error& error) {
        // Not tested: closing cancels the timer, but for one that is over already.
        if (error || self->_state == State::Closed)
            return;
        self->_timing = false;
        self->attempt([&] {
            if (self->_deadline <= Clock::now())
                (*self.*self->_expired)();
            else if (self->_deadline != Clock::time_point::max())
                self->awaitDeadline();
        });
    });
}

// Cancelling what is being waited for ends in bytesRead(), where the client is told.
void Connection::requestTimedOut() {
    _timedOut = true;
    Error ignored;
    _stream.socket().cancel(ignored);
}

} // namespace embedded::http
