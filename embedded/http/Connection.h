// One client's connection: a request is read, handled and answered, then the next one.
#pragma once

#include "http/Server.h"
#include "http/Wire.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace embedded::http {

class Connection;

/// What a connection asks of the server that has accepted it. Called on the I/O thread only.
class ConnectionOwner {
  public:
    virtual ~ConnectionOwner() = default;
    virtual const Options& options() const = 0;
    virtual bool stopping() const = 0;
    /// Has `request` handled on a worker and calls `done` with the reply on the I/O thread.
    virtual void handle(Request request, std::function<void(Reply)> done) = 0;
    virtual void log(const std::string& line) = 0;
    /// `connection` is closed and may be forgotten.
    virtual void closed(Connection& connection) = 0;
};

/// Thread-safety: everything happens on the I/O thread. Outlived by its owner.
class Connection : public std::enable_shared_from_this<Connection> {
  public:
    Connection(boost::asio::ip::tcp::socket socket, ConnectionOwner& owner);

    /// Reads the first request.
    void start();
    /// Sends `reply` without having read anything, and closes.
    void refuse(const Reply& reply);
    /// Closes, unless a request is being handled or answered; that is finished first.
    void stop();

  private:
    enum class State { Idle, Reading, Handling, Writing, Lingering, Closed };
    using Error = boost::beast::error_code;
    using Parser = boost::beast::http::request_parser<boost::beast::http::string_body>;
    using Step = void (Connection::*)();

    void awaitRequest();
    void readHeader();
    void headerRead();
    void sendContinue();
    void readBody();
    void handle();
    void respond(Reply reply);
    void reject(unsigned status, const std::string& reason, const std::string& why);
    void write();
    void linger();
    void discard();
    void close();

    void readingFailed(const Error& error);
    /// A completion handler that goes on with `next`, or ends the request that cannot be read.
    auto then(Step next);
    /// Calls `expired` after `time` unless arm() or disarm() is called before.
    void arm(std::chrono::steady_clock::duration time, Step expired);
    void disarm();
    void requestTimedOut();

    boost::asio::ip::tcp::socket _socket;
    boost::asio::steady_timer _timer;
    std::uint64_t _armed = 0; // tells a late call of an old timer from the present one
    ConnectionOwner& _owner;
    State _state = State::Idle;
    std::string _peer; // for the log
    boost::beast::flat_buffer _in;
    std::optional<Parser> _parser;
    bool _timedOut = false;
    bool _withBody = true;
    Persistence _persistence = Persistence::Close;
    std::string _out;
    std::size_t _written = 0;
};

} // namespace embedded::http
