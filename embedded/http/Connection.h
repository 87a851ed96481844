// One client's connection: a request is read, handled and answered, then the next one.
#pragma once

#include "http/HandlerMemory.h"
#include "http/Server.h"
#include "http/Stream.h"

#include <boost/asio/basic_waitable_timer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/buffers_suffix.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/basic_parser.hpp>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace embedded::http {

class Connection;

/// Beast's parser, which here fills a Request. It copies each byte once.
class Parser : public boost::beast::http::basic_parser<true> {
  public:
    Request& request() { return _request; }

  private:
    using Error = boost::beast::error_code;
    using View = boost::beast::string_view;
    using Field = boost::beast::http::field;

    static std::string text(View view) { return {view.data(), view.size()}; }

    void on_request_impl(boost::beast::http::verb, View verb, View target, int version,
                         Error&) override {
        _request.verb = text(verb);
        _request.target = text(target);
        _request.version = static_cast<unsigned>(version);
        _request.fields.reserve(12); // what most clients send
    }
    // Fields after the body are ignored (RFC 9110 clause 6.5.1: only fields that are known to be
    // safe there may be merged into the header, and this server knows none).
    void on_field_impl(Field, View name, View value, Error&) override {
        if (!is_header_done())
            _request.fields.emplace_back(text(name), text(value));
    }
    void on_body_init_impl(const boost::optional<std::uint64_t>& length, Error&) override {
        _request.body.reserve(static_cast<std::size_t>(length.value_or(0))); // within the limit
    }
    std::size_t on_body_impl(View body, Error&) override {
        _request.body.append(body.data(), body.size());
        return body.size();
    }
    std::size_t on_chunk_body_impl(std::uint64_t, View body, Error& error) override {
        return on_body_impl(body, error);
    }
    void on_response_impl(int, View, int, Error&) override {}
    void on_header_impl(Error&) override {}
    void on_chunk_header_impl(std::uint64_t, View, Error&) override {}
    void on_finish_impl(Error&) override {}

    Request _request;
};

/// The server, as its connections see it. A connection calls it on its own I/O thread only, log()
/// on any. If handle() throws, the connection closes.
class ConnectionOwner {
  public:
    virtual ~ConnectionOwner() = default;
    virtual const Options& options() const = 0;
    virtual bool stopping() const = 0;
    /// Has `request` handled, and calls `connection.respond()` with the reply, now or later.
    virtual void handle(Request&& request, Connection& connection) = 0;
    virtual void log(const std::string& kind, const std::string& line) noexcept = 0;
    /// Counts `bytes` that wait to be sent; a negative number takes them out of the count. Returns
    /// false, and counts nothing, if all connections together would have too many.
    virtual bool hold(std::int64_t bytes) noexcept = 0;
    /// `connection` is closed and may be forgotten.
    virtual void closed(Connection& connection) noexcept = 0;
};

/// Closes itself if an exception (no memory, say) keeps it from answering its client.
///
/// Thread-safety: everything happens on one I/O thread. Outlived by its owner.
class Connection : public std::enable_shared_from_this<Connection> {
  public:
    using Executor = Stream::executor_type;
    using Socket = Stream::Socket;

    /// `tls`: for TLS, else null.
    Connection(Socket socket, const TlsContext* tls, ConnectionOwner& owner);

    /// Reads the first request.
    void start();
    /// Sends `reply` without having read a request, and closes.
    void refuse(Reply reply);
    /// Verb and target of the request that is being handled, for the log.
    const std::string& asked() const { return _asked; }
    /// Sends the reply to the request that is being handled, unless the connection was closed. A
    /// reply with the status 0 closes the connection.
    void respond(Reply reply);
    /// Closes, unless a request is being handled or answered; that is finished first.
    void stop();
    /// Closes if it waits for a request, or for the rest of one, and tells that client. If it waits
    /// for neither any more, it stays open and isGivingWay() ends.
    void giveWay();
    /// Whether giveWay() is to be called, or has been and it is about to close. On any thread.
    bool isGivingWay() const { return _givingWay; }
    void setGivingWay(bool givingWay) { _givingWay = givingWay; }
    /// Closes at once. A body source is destroyed.
    void close() noexcept;
    /// Closes, because what it waited for will not come. Does nothing if it is closed already.
    void lost() noexcept;
    /// Runs `step` on behalf of this connection, which closes if `step` throws.
    template <class Step>
    void attempt(const Step& step) noexcept {
        try {
            step();
        } catch (...) {
            failed(thrownText);
        }
    }
    /// Holds the handler that passes the request on to the thread that handles it next.
    HandlerMemory& memory() { return _memory; }

    using Clock = std::chrono::steady_clock;
    /// What the connection waits for. A connection with a higher value gives way to others first,
    /// since less is lost.
    enum class Waiting { ForNothing, ForTheRest, ForARequest };
    Waiting waiting() const { return _waiting; } ///< on any thread
    /// Since when it waits. On any thread.
    Clock::time_point waitingSince() const {
        return Clock::time_point(Clock::duration(_waitingSince));
    }
    /// The address of the client, without its port. On any thread.
    const std::string& peerAddress() const { return _peerAddress; }

  private:
    enum class State { Greeting, Idle, Reading, Handling, Writing, Lingering, Closed };
    using Timer =
        boost::asio::basic_waitable_timer<Clock, boost::asio::wait_traits<Clock>, Executor>;
    using Error = boost::beast::error_code;
    using Out = boost::beast::buffers_suffix<std::array<boost::asio::const_buffer, 3>>;
    using Step = void (Connection::*)();

    void failed(std::string (*why)()) noexcept;
    void secure(Clock::duration time, Step next);
    void handshakeFailed(const Error& error);
    void handshakeTimedOut();
    void sendRefusal();
    void waitFor(Waiting what);
    void awaitRequest();
    void read();
    void bytesRead(const Error& error, std::size_t size);
    void beginRequest();
    void parse();
    bool refusesFraming();
    bool holdForExpectation();
    bool account(std::size_t bytes);
    void handle();
    void gather();
    void send();
    void sendPiece(std::string_view end);
    void nextPiece();
    void write();
    void written();
    void reject(unsigned status, const std::string& reason, const std::string& why);
    void linger();
    void sendEnd(std::string_view farewell);
    void letReplyGo() noexcept;
    void readingFailed(const Error& error);
    /// Has `next` called from the I/O thread's loop, after what else is waiting there.
    void later(Step next);

    /// Calls `expired` after `time` unless within() or disarm() is called before.
    void within(Clock::duration time, Step expired);
    void disarm();
    void awaitDeadline();
    void requestTimedOut();

    Stream _stream;
    Timer _timer; // waits for _deadline as it was some time ago
    bool _timing = false;
    Clock::time_point _deadline = Clock::time_point::max();
    Step _expired = nullptr;
    ConnectionOwner& _owner;
    State _state = State::Idle;
    std::string _peerAddress;
    std::string _certificateName;
    std::string _peer; // for the log
    std::atomic<Waiting> _waiting{Waiting::ForNothing};
    std::atomic<Clock::rep> _waitingSince{0};
    std::atomic<bool> _givingWay{false};
    boost::beast::flat_buffer _in;
    std::optional<Parser> _parser;
    std::uint64_t _taken = 0; // bytes of the request, whatever they are
    bool _timedOut = false;
    std::string _asked;
    bool _withBody = true;
    bool _chunks = false; // the client knows them
    Persistence _persistence = Persistence::Close;
    // What is being written: _head, _reply.body, an end.
    std::string _head;
    Reply _reply;
    Out _out;
    std::size_t _sent = 0;  // since the time for it began
    std::int64_t _held = 0; // bytes of request and reply that the owner knows of
    HandlerMemory _memory;
};

} // namespace embedded::http
