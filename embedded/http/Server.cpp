#include "http/Server.h"

#include "http/Connection.h"
#include "http/HandlerMemory.h"
#include "http/Lanes.h"
#include "http/Message.h"
#include "threads/Locks.h"

#include <boost/asio/dispatch.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <atomic>
#include <deque>
#include <map>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

namespace embedded::http {

namespace asio = boost::asio;
using asio::ip::tcp;
using Error = boost::system::error_code;

namespace {

constexpr std::chrono::milliseconds acceptPause{10};

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

Reply unavailable() { return Reply{503, "Service Unavailable", {{"Retry-After", "1"}}}; }

// What the listening socket `socket` speaks.
tcp protocol(int socket) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    return address.ss_family == AF_INET6 ? tcp::v6() : tcp::v4();
}

} // namespace

Listener::Listener(const std::string& address, std::uint16_t port,
                   std::shared_ptr<const TlsContext> tls)
    : _tls(std::move(tls)) {
    try {
        asio::io_context io;
        tcp::acceptor acceptor(io);
        const tcp::endpoint local = endpoint(io, address, port);
        acceptor.open(local.protocol());
        acceptor.set_option(tcp::acceptor::reuse_address(true));
        acceptor.bind(local);
        acceptor.listen(tcp::acceptor::max_listen_connections);
        _port = acceptor.local_endpoint().port();
        _isLoopback = local.address().is_loopback();
        _socket = acceptor.release();
    } catch (const boost::system::system_error& error) {
        throw std::runtime_error("cannot listen on " + authority(address, port) + ": " +
                                 error.code().message());
    }
}

Listener::Listener(Listener&& other) noexcept
    : _socket(other.release()), _port(other._port), _isLoopback(other._isLoopback),
      _tls(std::move(other._tls)) {}

Listener::~Listener() {
    if (_socket >= 0)
        ::close(_socket);
}

int Listener::release() { return std::exchange(_socket, -1); }

// Each I/O thread has an io_context of its own and keeps the connections that it was given, so that
// what happens to a connection happens on one thread, and threads share next to nothing. The first
// one accepts, and ends the others.
//
// Ownership: connections belong to their thread and to what they wait for, and know it by reference
// only. All belongs to the server; Work that does not return keeps it, see run().
class Server::Implementation : public std::enable_shared_from_this<Server::Implementation> {
  public:
    Implementation(std::vector<Listener> listeners, Options options, Handler handler)
        : _options(std::move(options)), _handler(std::move(handler)), _log(_options.log),
          _lanes(_options.lanes) {
        const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
        const unsigned threads = _options.ioThreads != 0 ? _options.ioThreads : std::min(cores, 4U);
        while (_threads.size() < threads)
            _threads.push_back(std::make_unique<IoThread>(*this, _threads.size()));
        _connections.resize(threads);
        for (Listener& listener : listeners) {
            const int socket = listener.release();
            _acceptors.emplace_back(_threads.front()->io(), protocol(socket), socket);
            _listeningPorts.emplace_back(_acceptors.back(), listener.tls());
        }
        _grace.emplace(_threads.front()->io());
        _pause.emplace(_threads.front()->io());
        _laneTimer.emplace(_threads.front()->io());
        _workers.emplace(_options.workers);
    }

    bool drained() const { return _drained; }

    void run() {
        acceptAll();
        {
            std::deque<Thread> others;
            try {
                for (std::size_t i = 1; i < _threads.size(); ++i)
                    others.emplace_back([thread = _threads[i].get()] { thread->run(); });
                _threads.front()->run();
            } catch (...) {
                end();
                throw;
            }
        }
        for (const auto& thread : _threads)
            thread->finish();
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
        asio::post(_threads.front()->io(),
                   onReserve(
                       _stopMemory,
                       [this, grace] {
                           _stopping = true;
                           Error ignored;
                           for (tcp::acceptor& acceptor : _acceptors)
                               acceptor.close(ignored);
                           _pause->cancel(ignored);
                           try {
                               _grace->expires_after(grace);
                               _grace->async_wait([this](const Error& error) {
                                   if (!error)
                                       end();
                               });
                           } catch (...) { // without memory for it there is no time to grant
                               end();
                           }
                           for (const auto& thread : _threads)
                               asio::post(thread->io(),
                                          onReserve(
                                              thread->_stopMemory, [&thread] { thread->stop(); }));
                           endIfIdle();
                       }));
    }

  private:
    // Joined at its end.
    struct Thread : std::thread {
        using std::thread::thread;
        ~Thread() { join(); }
    };

    // Asio's thread_pool would wait for ever for those that it has if it cannot have one of its
    // threads.
    class Workers {
      public:
        explicit Workers(unsigned count) : _work(_io.get_executor()) {
            try {
                for (; count != 0; --count)
                    _threads.emplace_back([this] { _io.run(); });
            } catch (...) {
                stop();
                throw;
            }
        }

        ~Workers() { stop(); }
        Workers(const Workers&) = delete;
        Workers& operator=(const Workers&) = delete;

        asio::io_context& io() { return _io; }
        /// When nothing more comes.
        void join() {
            _work.reset();
            _threads.clear();
        }
        /// What has not begun will not.
        void stop() { _io.stop(); }

      private:
        asio::io_context _io;
        asio::executor_work_guard<asio::io_context::executor_type> _work;
        std::deque<Thread> _threads;
    };

    class IoThread : public ConnectionOwner {
      public:
        IoThread(Implementation& server, std::size_t number)
            : _server(server), _number(number), _work(_io.get_executor()) {
            // What Asio makes with the first of them is there from now on.
            const Connection::Socket socket(_io);
            const asio::steady_timer timer(_io);
        }

        asio::io_context& io() { return _io; }

        void run() {
            // What connections do throws nothing. What is left is Asio itself, which may have no
            // memory to register a socket.
            while (!_io.stopped())
                try {
                    _io.run();
                } catch (const std::exception& error) {
                    _server.interrupted(*this, error);
                }
            closeAll(&Connection::close);
        }
        /// When all have left their loops: what was handed to this one meanwhile may hold a
        /// connection, which is closed here.
        void finish() noexcept {
            try {
                do
                    _io.restart();
                while (_io.poll() != 0);
            } catch (const std::exception&) { // it is closed with this object
            }
            closeAll(&Connection::close);
        }
        /// On this thread, as the rest.
        void stop() { closeAll(&Connection::stop); }

        /// REQUIRES: the socket is counted.
        void admit(Connection::Socket socket, const TlsContext* tls, bool full) noexcept {
            std::shared_ptr<Connection> connection;
            try {
                connection = std::make_shared<Connection>(std::move(socket), tls, *this);
                const threads::Lock lock(_server._connectionsMutex);
                _server._connections[_number].insert(connection);
                connection->setGivingWay(full);
                _server._turnedAway -= full;
            } catch (const std::exception& error) {
                _server.cannotAccept(error.what());
                _server._turnedAway -= full;
                _server.closed();
                return;
            }
            connection->attempt([&] {
                if (full)
                    connection->refuse(unavailable());
                else
                    connection->start();
            });
        }

        const Options& options() const override { return _server._options; }
        bool stopping() const override { return _server._stopping; }
        void log(const std::string& kind, const std::string& line) noexcept override {
            _server.log(kind, line);
        }
        bool hold(std::int64_t bytes) noexcept override { return _server.hold(bytes); }

        void handle(Request&& request, Connection& connection) override {
            Answer answer = _server.guarded(
                connection, [&]() -> Answer { return _server._handler(std::move(request)); });
            if (Reply* reply = std::get_if<Reply>(&answer))
                connection.respond(std::move(*reply));
            else
                handOver(std::get<Work>(std::move(answer)), connection.shared_from_this());
        }

        void closed(Connection& connection) noexcept override {
            {
                const threads::Lock lock(_server._connectionsMutex);
                _server._connections[_number].erase(connection.shared_from_this());
                --_server._open; // with it, as makeRoom() counts both
            }
            _server.endIfIdle();
        }

      private:
        void handOver(Work given, const std::shared_ptr<Connection>& connection) {
            const auto work = std::make_shared<Work>(std::move(given));
            Lanes::Work waiting{work->lanes, [this, work, connection] { start(work, connection); },
                                [this, work, connection] { giveUp(*work, connection); },
                                Lanes::Clock::now() + options().laneWait};
            ++_server._handling;
            try {
                _server._lanes.enter(std::move(waiting));
            } catch (...) {
                --_server._handling;
                throw;
            }
            _server.watchLanes();
        }

        // On any thread, as all up to finish().
        void start(const std::shared_ptr<Work>& work,
                   const std::shared_ptr<Connection>& connection) noexcept {
            asio::post(_server._workers->io(),
                       onReserve(
                           connection->memory(),
                           [this, work, connection] {
                               Answer answer = _server.guarded(*connection, work->make);
                               work->make =
                                   nullptr; // what it holds may be large, or be wanted elsewhere
                               work->late = nullptr;
                               _server._lanes.leave(work->lanes);
                               finish(std::move(answer), connection);
                           }));
        }

        void giveUp(const Work& work, const std::shared_ptr<Connection>& connection) noexcept {
            finish(_server.guarded(
                       *connection,
                       [&]() -> Answer {
                           _server.log("waited too long", "given up, " + connection->asked() +
                                                              ": no place for it in time");
                           return work.late ? work.late() : unavailable();
                       }),
                   connection);
        }

        void finish(Answer answer, const std::shared_ptr<Connection>& connection) noexcept {
            asio::post(_io, onReserve(
                                connection->memory(),
                                [this, answer = std::move(answer), connection]() mutable {
                                    connection->attempt([&] {
                                        if (Reply* reply = std::get_if<Reply>(&answer))
                                            connection->respond(std::move(*reply));
                                        else
                                            handOver(std::get<Work>(std::move(answer)), connection);
                                    });
                                    --_server._handling;
                                    _server.endIfIdle();
                                }));
        }

        // Without the lock: no other thread changes this set. A connection that closes leaves it.
        void closeAll(void (Connection::*how)()) noexcept LOCKING_UNCHECKED {
            const auto& mine = _server._connections[_number];
            for (auto each = mine.begin(); each != mine.end();) {
                const std::shared_ptr<Connection> connection = *each++;
                connection->attempt([&] { (*connection.*how)(); });
            }
        }

        Implementation& _server;
        const std::size_t _number; // among the threads
        HandlerMemory _stopMemory; // outlives the loop that has handlers in it
        asio::io_context _io{1};
        asio::executor_work_guard<asio::io_context::executor_type> _work;

        friend class Implementation;
    };

    template <class Function>
    Answer guarded(const Connection& connection, const Function& function) noexcept {
        try {
            try {
                return function();
            } catch (const std::bad_alloc&) {
                log("503", "503 for " + connection.asked() + ": out of memory");
                return unavailable();
            } catch (...) {
                log("500", "500 for " + connection.asked() + ": " + thrownText());
                return Reply{500, "Internal Server Error"};
            }
        } catch (...) {
            return Reply{0, {}, {}};
        }
    }

    void log(const std::string& kind, const std::string& line) noexcept {
        try {
            const threads::Lock lock(_logMutex);
            if (_log)
                _log(kind, line);
        } catch (...) { // a line less
        }
    }

    void cannotAccept(const char* why) noexcept {
        try {
            log("cannot accept", std::string("cannot accept a connection: ") + why);
        } catch (...) { // a line less
        }
    }

    // Asio has thrown something to the loop of `thread`.
    void interrupted(const IoThread& thread, const std::exception& error) noexcept {
        cannotAccept(error.what());
        // Not tested: here; Asio may have had no memory for the next connection, see tests/faults.
        if (&thread == _threads.front().get() && !_stopping)
            acceptAll();
    }

    // While something waits for a place, looks every second whether it has waited too long.
    void watchLanes() noexcept {
        if (!_lanes.isWaiting() || _watchingLanes.exchange(true))
            return;
        asio::post(_threads.front()->io(), onReserve(_laneMemory, [this] { awaitLanes(); }));
    }

    void awaitLanes() noexcept {
        try {
            _laneTimer->expires_after(std::chrono::seconds(1));
            _laneTimer->async_wait([this](const Error& cancelled) {
                if (cancelled) // Not tested: nobody cancels it while the loop runs
                    return;
                _lanes.expire(Lanes::Clock::now());
                _watchingLanes = false;
                watchLanes();
            });
        } catch (...) { // whoever waits next tries again
            _watchingLanes = false;
        }
    }

    // Says while it lives that the next connection is awaited: it is gone with its handler, called
    // or not.
    struct NoLonger {
        void operator()(bool* accepting) const { *accepting = false; }
    };
    using Accepting = std::unique_ptr<bool, NoLonger>;

    // What is listened to.
    struct ListeningPort {
        ListeningPort(tcp::acceptor& from, std::shared_ptr<const TlsContext> with)
            : acceptor(from), tls(std::move(with)) {}

        tcp::acceptor& acceptor;
        const std::shared_ptr<const TlsContext> tls;
        bool accepting = false;
        HandlerMemory memory;
    };

    // Where it is not being done.
    void acceptAll() noexcept {
        for (ListeningPort& listening : _listeningPorts)
            if (!listening.accepting)
                accept(listening);
    }

    void accept(ListeningPort& listening) noexcept {
        IoThread& thread = *_threads[_next++ % _threads.size()];
        listening.accepting = true;
        listening.acceptor.async_accept(
            thread.io(),
            onReserve(listening.memory, [this, &listening, &thread,
                                         accepting = Accepting(&listening.accepting)](
                                            const Error& error, Connection::Socket socket) mutable {
                accepting.reset();
                if (_stopping)
                    return;
                if (!error) {
                    admit(listening, thread, std::move(socket));
                    return;
                }
                cannotAccept(error.message().c_str()); // out of file descriptors, most likely
                acceptLater();
            }));
    }

    // Asking again at once would only burn time. Who connects meanwhile waits in the kernel.
    void acceptLater() noexcept {
        try {
            _pause->expires_after(acceptPause);
            _pause->async_wait([this](const Error& cancelled) {
                // Not tested: it stops while it lacks descriptors, or accepts again for another
                // reason.
                if (!cancelled && !_stopping)
                    acceptNext();
            });
        } catch (...) {
            acceptAll();
        }
    }

    void admit(const ListeningPort& listening, IoThread& thread,
               Connection::Socket socket) noexcept {
        const bool over = _open++ >= _options.connectionLimit;
        bool full = false;
        try {
            Error ignored;
            socket.set_option(tcp::no_delay(true), ignored);
            full = over && !makeRoom();
            _turnedAway += full;
            asio::dispatch(thread.io(), [&thread, tls = listening.tls.get(), full,
                                         socket = std::move(socket)]() mutable {
                thread.admit(std::move(socket), tls, full);
            });
        } catch (const std::exception& failure) {
            cannotAccept(failure.what());
            _turnedAway -= full;
            closed();
        }
        acceptNext();
    }

    // At once, or when there are fewer to be turned away. Each other port may let in one more
    // before.
    void acceptNext() noexcept {
        if (_open < _options.connectionLimit + _options.refusalLimit)
            acceptAll();
        else
            acceptLater();
    }

    // Has as many of the connections that only wait give way as there are too many, beside those
    // that do so already: one that waits for a request rather than for the rest of one, then of the
    // address that has most connections, then the one that has waited longest. False: there is one
    // too many, and none waits.
    bool makeRoom() {
        const threads::Lock lock(_connectionsMutex);
        std::size_t staying = _open - _turnedAway;
        std::map<std::string, std::size_t> held;
        for (const auto& connections : _connections)
            for (const auto& connection : connections)
                if (connection->isGivingWay())
                    --staying;
                else
                    ++held[connection->peerAddress()];
        const auto now = Connection::Clock::now();
        const auto rank = [&](const Connection& connection) {
            return std::tuple(connection.waiting(), held[connection.peerAddress()],
                              now - connection.waitingSince());
        };
        bool room = staying <= _options.connectionLimit;
        for (; staying > _options.connectionLimit; --staying) {
            IoThread* where = nullptr;
            std::shared_ptr<Connection> first;
            for (std::size_t i = 0; i < _threads.size(); ++i)
                for (const auto& connection : _connections[i])
                    if (!connection->isGivingWay() &&
                        connection->waiting() != Connection::Waiting::ForNothing &&
                        (!first || rank(*connection) > rank(*first))) {
                        first = connection;
                        where = _threads[i].get();
                    }
            if (!first)
                break;
            first->setGivingWay(true);
            try {
                asio::post(
                    where->io(), [first] { first->attempt([&] { first->giveWay(); }); });
            } catch (...) {
                first->setGivingWay(false);
                throw;
            }
            --held[first->peerAddress()];
            room = true;
        }
        return room;
    }

    bool hold(std::int64_t bytes) noexcept {
        // Not tested: bytes that are given back while others, too many, are being turned away.
        if ((_held += bytes) <= static_cast<std::int64_t>(_options.keptLimit) || bytes <= 0)
            return true;
        _held -= bytes;
        return false;
    }

    // On any I/O thread.
    void closed() noexcept {
        --_open;
        endIfIdle();
    }

    // When it stops and nobody is connected nor anything handled. On any I/O thread.
    void endIfIdle() noexcept {
        if (_stopping && _open == 0 && _handling == 0)
            end();
    }

    // Lets the threads leave their loops; connections that are left are closed by them.
    void end() noexcept {
        for (const auto& thread : _threads)
            thread->io().stop();
    }

    const Options _options;
    const Handler _handler;
    threads::Mutex _logMutex; // held while a line is logged
    const std::function<void(const std::string&, const std::string&)> _log GUARDED_BY(_logMutex);
    // Used by the first thread only. They outlive the loops that have handlers in their memory.
    std::deque<ListeningPort> _listeningPorts;
    HandlerMemory _stopMemory;
    HandlerMemory _laneMemory;
    std::vector<std::unique_ptr<IoThread>> _threads;
    // Used by the first thread only.
    std::deque<tcp::acceptor> _acceptors;
    std::optional<asio::steady_timer> _grace;
    std::optional<asio::steady_timer> _pause;
    std::optional<asio::steady_timer> _laneTimer;
    std::size_t _next = 0;
    // Shared. A connection counts from before its thread hears of it, so that no thread ends before
    // it has all of its own.
    std::atomic<std::size_t> _open{0};
    std::atomic<std::size_t> _turnedAway{0}; // of these, those whose thread has not heard of them
    std::atomic<std::int64_t> _held{0};      // bytes that connections keep
    threads::Mutex _connectionsMutex;
    // Of each thread, which alone changes its set.
    std::vector<std::set<std::shared_ptr<Connection>>> _connections GUARDED_BY(_connectionsMutex);
    std::atomic<unsigned> _handling{0}; // requests at the workers
    std::atomic<bool> _stopping{false};
    std::atomic<bool> _watchingLanes{false};
    Lanes _lanes;
    bool _drained = true;
    std::optional<Workers> _workers; // what waits in it refers to all of the above
};

Server::Server(std::vector<Listener> listeners, const Options& options, Handler handler)
    : _implementation(
          std::make_shared<Implementation>(std::move(listeners), options, std::move(handler))) {}

Server::~Server() = default;

void Server::run() { _implementation->run(); }

void Server::stop(std::chrono::seconds grace) { _implementation->stop(grace); }

bool Server::drained() const { return _implementation->drained(); }

} // namespace embedded::http
