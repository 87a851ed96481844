// One client's connection: a request is read, handled and answered, then the next one.
#pragma once

#include "http/HandlerMemory.h"
#include "http/Parser.h"
#include "http/Server.h"
#include "http/Stream.h"
#include "http/Wire.h"

#include <boost/asio/basic_waitable_timer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/buffers_suffix.hpp>
#include <boost/beast/core/flat_buffer.hpp>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace embedded::http {

class Connection;

/// What a connection asks of the server that has accepted it. Called on the connection's I/O thread
/// only, but for log(). What handle() throws closes the connection.
class ConnectionOwner {
  public:
    virtual ~ConnectionOwner() = default;
    virtual const Options& options() const = 0;
    virtual bool stopping() const = 0;
    /// Has `request` handled, and calls `connection.respond()` with the reply, now or later.
    virtual void handle(Request&& request, Connection& connection) = 0;
    virtual void log(const std::string& kind, const std::string& line) noexcept = 0;
    /// Takes `bytes` that wait to be sent into account, or with less than 0 out of it; false: it is
    /// too much in all, and they are not taken.
    virtual bool hold(std::int64_t bytes) noexcept = 0;
    /// `connection` is closed and may be forgotten.
    virtual void closed(Connection& connection) noexcept = 0;
};

/// Closes itself when it cannot tell its client of an exception, being out of memory, say.
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
    /// Sends the reply to the request that is being handled, unless the connection was closed. One
    /// without a status is none: the connection is closed.
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
    /// Closes: what it waited for will not come. Nothing, if it is closed.
    void lost() noexcept;
    /// Does `step` on behalf of this connection. What it throws closes it.
    template <class Step>
    void attempt(const Step& step) noexcept {
        try {
            step();
        } catch (...) {
            failed();
        }
    }
    /// For the request that is being handled, to pass it on to where it is handled next.
    HandlerMemory& memory() { return _memory; }

    using Clock = std::chrono::steady_clock;
    /// What it waits for, of what can be given up for others: more if less is lost.
    enum class Waiting { ForNothing, ForTheRest, ForARequest };
    Waiting waiting() const { return _waiting; } ///< on any thread
    /// Since when it has done so. On any thread.
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

    void failed() noexcept;
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
