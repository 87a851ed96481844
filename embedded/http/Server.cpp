#include "http/Server.h"

#include "http/Connection.h"
#include "http/Wire.h"
#include "http/Workers.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>

#include <mutex>
#include <set>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace embedded::http {

namespace asio = boost::asio;
using asio::ip::tcp;
using Error = boost::system::error_code;

namespace {

// Connections beyond the limit that are told so at the same time; any more are just closed.
constexpr std::size_t refusalLimit = 64;
constexpr std::chrono::milliseconds acceptPause{100};

std::runtime_error cannotListen(const std::string& address, std::uint16_t port,
                                const Error& error) {
    const bool v6 = address.find(':') != std::string::npos;
    return std::runtime_error("cannot listen on " + (v6 ? "[" + address + "]" : address) + ":" +
                              std::to_string(port) + ": " + error.message());
}

tcp::endpoint endpoint(asio::io_context& io, const std::string& address, std::uint16_t port) {
    Error notNumeric;
    const auto number = asio::ip::make_address(address, notNumeric);
    if (!notNumeric)
        return {number, port};
    return tcp::resolver(io)
        .resolve(address, std::to_string(port), tcp::resolver::passive)
        .begin()
        ->endpoint();
}

// What the listening socket `socket` speaks.
tcp protocol(int socket) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    return address.ss_family == AF_INET6 ? tcp::v6() : tcp::v4();
}

} // namespace

Listener::Listener(const std::string& address, std::uint16_t port) {
    try {
        asio::io_context io;
        tcp::acceptor acceptor(io);
        const tcp::endpoint local = endpoint(io, address, port);
        acceptor.open(local.protocol());
        acceptor.set_option(tcp::acceptor::reuse_address(true));
        acceptor.bind(local);
        acceptor.listen(tcp::acceptor::max_listen_connections);
        _port = acceptor.local_endpoint().port();
        _socket = acceptor.release();
    } catch (const boost::system::system_error& error) {
        throw cannotListen(address, port, error.code());
    }
}

Listener::Listener(Listener&& other) noexcept : _socket(other.release()), _port(other._port) {
}

Listener::~Listener() {
    if (_socket >= 0)
        ::close(_socket);
}

int Listener::release() {
    return std::exchange(_socket, -1);
}

// Ownership: connections belong to _connections and to what they wait for in _io, and know the
// server by reference only. A job on a worker owns the server, because a handler that does not
// return may outlive Server.
class Server::Implementation : public ConnectionOwner,
                               public std::enable_shared_from_this<Server::Implementation> {
  public:
    Implementation(Listener listener, Options options, Handler handler)
        : _options(std::move(options)), _handler(std::move(handler)), _acceptor(_io), _grace(_io),
          _pause(_io), _work(_io.get_executor()) {
        const int socket = listener.release();
        _acceptor.assign(protocol(socket), socket);
    }

    bool drained() const { return _drained; }

    void run() {
        _workers.start(_options.workers);
        accept();
        _io.run();
        _drained = _handling == 0;
        if (_drained)
            _workers.join();
        else
            _workers.leave();
    }

    void stop(std::chrono::seconds grace) {
        asio::post(_io, [this, grace] {
            _stopping = true;
            Error ignored;
            _acceptor.close(ignored);
            _pause.cancel();
            _grace.expires_after(grace);
            _grace.async_wait([this](const Error& error) {
                if (!error)
                    _io.stop();
            });
            // A copy: a connection that closes leaves the set.
            const auto connections = _connections;
            for (const auto& connection : connections)
                connection->stop();
            endWhenIdle();
        });
    }

    const Options& options() const override { return _options; }
    bool stopping() const override { return _stopping; }

    void handle(Request request, std::function<void(Reply)> done) override {
        ++_handling;
        _workers.submit([self = shared_from_this(), request = std::move(request),
                         done = std::move(done)]() mutable {
            Reply reply = self->answer(request);
            // Not `self`: what is queued in _io must not own it.
            asio::post(self->_io,
                       [server = self.get(), reply = std::move(reply), done = std::move(done)] {
                           --server->_handling;
                           done(reply);
                       });
        });
    }

    void log(const std::string& line) override {
        if (!_options.log)
            return;
        const std::lock_guard<std::mutex> lock(_logMutex);
        _options.log(line);
    }

    void closed(Connection& connection) override {
        _connections.erase(connection.shared_from_this());
        endWhenIdle();
    }

  private:
    Reply answer(const Request& request) noexcept {
        try {
            return _handler(request);
        } catch (const std::exception& error) {
            log("500 for " + request.verb + " " + request.target + ": " + error.what());
        } catch (...) {
            log("500 for " + request.verb + " " + request.target + ": unknown exception");
        }
        return emptyReply(500, "Internal Server Error");
    }

    void accept() {
        _acceptor.async_accept([this](const Error& error, tcp::socket socket) {
            if (_stopping)
                return;
            if (error)
                acceptFailed(error);
            else
                admit(std::move(socket));
        });
    }

    // Out of file descriptors, most likely: asking again at once would only burn time.
    void acceptFailed(const Error& error) {
        log("cannot accept a connection: " + error.message());
        _pause.expires_after(acceptPause);
        _pause.async_wait([this](const Error& cancelled) {
            if (!cancelled && !_stopping)
                accept();
        });
    }

    void admit(tcp::socket socket) {
        if (_connections.size() < _options.connectionLimit + refusalLimit) {
            Error ignored;
            socket.set_option(tcp::no_delay(true), ignored);
            const bool full = _connections.size() >= _options.connectionLimit;
            const auto connection = std::make_shared<Connection>(std::move(socket), *this);
            _connections.insert(connection);
            if (full)
                connection->refuse(emptyReply(503, "Service Unavailable", {{"Retry-After", "1"}}));
            else
                connection->start();
        }
        accept();
    }

    void endWhenIdle() {
        if (!_stopping || !_connections.empty())
            return;
        _grace.cancel();
        _work.reset();
    }

    const Options _options;
    const Handler _handler;
    std::mutex _logMutex;
    asio::io_context _io{1};
    tcp::acceptor _acceptor;
    asio::steady_timer _grace;
    asio::steady_timer _pause;
    asio::executor_work_guard<asio::io_context::executor_type> _work;
    std::set<std::shared_ptr<Connection>> _connections;
    Workers _workers;
    unsigned _handling = 0; // requests at the workers
    bool _stopping = false;
    bool _drained = true;
};

Server::Server(Listener listener, const Options& options, Handler handler)
    : _implementation(
          std::make_shared<Implementation>(std::move(listener), options, std::move(handler))) {
}

Server::~Server() = default;

void Server::run() {
    _implementation->run();
}

void Server::stop(std::chrono::seconds grace) {
    _implementation->stop(grace);
}

bool Server::drained() const {
    return _implementation->drained();
}

} // namespace embedded::http
