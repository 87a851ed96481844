#include "http/Server.h"

#include "http/Connection.h"
#include "http/Wire.h"

#include <boost/asio/dispatch.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

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

// Each I/O thread has an io_context of its own and keeps the connections that it was given, so that
// what happens to a connection happens on one thread, and threads share next to nothing. The first
// one accepts, and ends the others.
//
// Ownership: connections belong to their thread and to what they wait for, and know it by reference
// only. All belongs to the server; Work that does not return keeps it, see run().
class Server::Implementation : public std::enable_shared_from_this<Server::Implementation> {
  public:
    Implementation(Listener listener, Options options, Handler handler)
        : _options(std::move(options)), _handler(std::move(handler)) {
        const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
        const unsigned threads = _options.ioThreads != 0 ? _options.ioThreads : std::min(cores, 4U);
        while (_threads.size() < threads)
            _threads.push_back(std::make_unique<IoThread>(*this));
        const int socket = listener.release();
        _acceptor.emplace(_threads.front()->io(), protocol(socket), socket);
        _grace.emplace(_threads.front()->io());
        _pause.emplace(_threads.front()->io());
    }

    bool drained() const { return _drained; }

    void run() {
        _workers.emplace(_options.workers);
        accept();
        std::vector<std::thread> others;
        for (std::size_t i = 1; i < _threads.size(); ++i)
            others.emplace_back([thread = _threads[i].get()] { thread->run(); });
        _threads.front()->run();
        for (std::thread& other : others)
            other.join();
        _drained = _handling == 0;
        if (_drained)
            _workers->join();
        else // nobody waits for what does not return, but what it uses has to stay
            std::thread([self = shared_from_this()] {
                self->_workers->stop();
                self->_workers->join();
            }).detach();
    }

    void stop(std::chrono::seconds grace) {
        asio::post(_threads.front()->io(), [this, grace] {
            _stopping = true;
            Error ignored;
            _acceptor->close(ignored);
            _pause->cancel();
            _grace->expires_after(grace);
            _grace->async_wait([this](const Error& error) {
                if (!error)
                    for (const auto& thread : _threads)
                        thread->io().stop();
            });
            for (const auto& thread : _threads)
                asio::post(thread->io(), [&thread] { thread->stop(); });
            if (_open == 0)
                end();
        });
    }

  private:
    class IoThread : public ConnectionOwner {
      public:
        explicit IoThread(Implementation& server) : _server(server), _work(_io.get_executor()) {}

        asio::io_context& io() { return _io; }

        void run() {
            _io.run();
            closeAll(&Connection::close);
        }
        /// On this thread, as the rest.
        void stop() { closeAll(&Connection::stop); }
        /// Without work, run() returns.
        void end() { _work.reset(); }

        void admit(Connection::Socket socket, bool full) {
            const auto connection = std::make_shared<Connection>(std::move(socket), *this);
            _connections.insert(connection);
            if (full)
                connection->refuse(emptyReply(503, "Service Unavailable", {{"Retry-After", "1"}}));
            else
                connection->start();
        }

        const Options& options() const override { return _server._options; }
        bool stopping() const override { return _server._stopping; }
        void log(const std::string& line) override { _server.log(line); }

        void handle(Request&& request, Connection& connection) override {
            Answer answer = _server.guarded(
                connection, [&]() -> Answer { return _server._handler(std::move(request)); });
            if (Reply* reply = std::get_if<Reply>(&answer))
                connection.respond(std::move(*reply));
            else
                handOver(std::get<Work>(std::move(answer)), connection.shared_from_this());
        }

        void closed(Connection& connection) override {
            _connections.erase(connection.shared_from_this());
            _server.closed();
        }

      private:
        void handOver(Work work, std::shared_ptr<Connection> connection) {
            ++_server._handling;
            asio::post(*_server._workers, [this, work = std::move(work),
                                           connection = std::move(connection)]() mutable {
                Reply reply = std::get<Reply>(
                    _server.guarded(*connection, [&]() -> Answer { return work(); }));
                work = nullptr; // what it holds may be large, or be wanted elsewhere
                asio::post(_io, [this, reply = std::move(reply),
                                 connection = std::move(connection)]() mutable {
                    --_server._handling;
                    connection->respond(std::move(reply));
                });
            });
        }

        void closeAll(void (Connection::*how)()) {
            // A copy: a connection that closes leaves the set.
            const auto connections = _connections;
            for (const auto& connection : connections)
                (*connection.*how)();
        }

        Implementation& _server;
        asio::io_context _io{1};
        asio::executor_work_guard<asio::io_context::executor_type> _work;
        std::set<std::shared_ptr<Connection>> _connections;
    };

    template <class Function>
    Answer guarded(const Connection& connection, const Function& function) noexcept {
        try {
            return function();
        } catch (...) {
            log("500 for " + connection.asked() + ": " + thrownText());
        }
        return emptyReply(500, "Internal Server Error");
    }

    void log(const std::string& line) {
        if (!_options.log)
            return;
        const std::lock_guard<std::mutex> lock(_logMutex);
        _options.log(line);
    }

    void accept() {
        IoThread& thread = *_threads[_next++ % _threads.size()];
        _acceptor->async_accept(thread.io(),
                                [this, &thread](const Error& error, Connection::Socket socket) {
                                    if (_stopping)
                                        return;
                                    if (error)
                                        acceptFailed(error);
                                    else
                                        admit(thread, std::move(socket));
                                });
    }

    // Out of file descriptors, most likely: asking again at once would only burn time.
    void acceptFailed(const Error& error) {
        log("cannot accept a connection: " + error.message());
        _pause->expires_after(acceptPause);
        _pause->async_wait([this](const Error& cancelled) {
            if (!cancelled && !_stopping)
                accept();
        });
    }

    void admit(IoThread& thread, Connection::Socket socket) {
        if (_open < _options.connectionLimit + refusalLimit) {
            Error ignored;
            socket.set_option(tcp::no_delay(true), ignored);
            const bool full = _open++ >= _options.connectionLimit;
            asio::dispatch(thread.io(), [&thread, full, socket = std::move(socket)]() mutable {
                thread.admit(std::move(socket), full);
            });
        }
        accept();
    }

    // On any I/O thread.
    void closed() {
        if (--_open == 0 && _stopping)
            asio::post(_threads.front()->io(), [this] { end(); });
    }

    void end() {
        _grace->cancel();
        for (const auto& thread : _threads)
            thread->end();
    }

    const Options _options;
    const Handler _handler;
    std::mutex _logMutex;
    std::vector<std::unique_ptr<IoThread>> _threads;
    // Used by the first thread only.
    std::optional<tcp::acceptor> _acceptor;
    std::optional<asio::steady_timer> _grace;
    std::optional<asio::steady_timer> _pause;
    std::size_t _next = 0;
    // Shared. A connection counts from before its thread hears of it, so that no thread ends before
    // it has all of its own.
    std::atomic<std::size_t> _open{0};
    std::atomic<unsigned> _handling{0}; // requests at the workers
    std::atomic<bool> _stopping{false};
    bool _drained = true;
    std::optional<asio::thread_pool> _workers; // what waits in it refers to all of the above
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
