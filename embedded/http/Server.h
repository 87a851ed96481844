// An HTTP/1.1 server for one kind of service: a request goes to one handler, its reply comes back
// on the same connection. Knows nothing of CIM.
#pragma once

#include "http/Message.h"
#include "http/Tls.h"
#include "limits/Limits.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace embedded::http {

struct Options {
    unsigned ioThreads = 0; ///< threads that read and write; 0: one a core, at most four
    unsigned workers = 4;   ///< threads that do what a handler returns as Work
    /// The number of places in each lane: that many Works of the lane run at once, others wait. The
    /// sum must be less than `workers`, or hanging Works could take every thread.
    std::vector<unsigned> lanes;
    std::chrono::seconds laneWait = limits::patience; ///< how long Work waits for its places
    /// Above this number the server closes a connection that waits for a request: of the address
    /// with most connections, the one that has waited longest. If none waits, the new client gets a
    /// 503.
    unsigned connectionLimit = limits::connections;
    /// Connections beyond the limit that are closed or refused at the same time; further ones wait
    /// to be accepted.
    unsigned refusalLimit = limits::refusals;
    /// How long the server reads on after a refusal, so that the client sees the reply; also the
    /// time for the TLS handshake before a refusal.
    std::chrono::seconds refusalTime = limits::refusalTime;
    std::uint64_t bodyLimit = limits::body;     ///< bytes; beyond it the reply is 413
    std::uint32_t headerLimit = limits::header; ///< bytes; beyond it the reply is 431
    /// Bytes of a body in pieces that an HTTP/1.0 client gets whole; beyond it the reply is 500.
    std::size_t wholeReplyLimit = limits::wholeReply;
    /// Bytes of all requests that the server reads or handles, and of all whole replies; beyond it
    /// the reply is 503.
    std::size_t keptLimit = limits::allRequests;
    std::chrono::seconds idleTimeout = limits::idleTime; ///< for the next request on a connection
    /// The time for the rest of a request that has begun, for a client to take `leastTaken` bytes
    /// of its reply, and for a TLS handshake.
    std::chrono::seconds requestTimeout = limits::requestTime;
    std::size_t leastTaken = limits::leastTaken; ///< bytes, or all that is left
    /// Takes a line for the log, and its kind, of which there are few, whatever clients send.
    /// Called on any thread, one call at a time; must not block.
    std::function<void(const std::string& kind, const std::string& line)> log;
};

/// Listens from its construction on: the port is known, and clients may connect, before the Server
/// that takes it over exists.
class Listener {
  public:
    /// `address`: a number or a name; `port`: 0 for any free one; `tls`: null for plain HTTP.
    /// Throws std::runtime_error that says address, port and reason.
    Listener(const std::string& address, std::uint16_t port,
             std::shared_ptr<const TlsContext> tls = nullptr);
    ~Listener();
    Listener(Listener&& other) noexcept;
    Listener& operator=(Listener&&) = delete;

    /// The port in use.
    std::uint16_t port() const { return _port; }
    /// Whether only this machine can connect.
    bool isLoopback() const { return _isLoopback; }
    const std::shared_ptr<const TlsContext>& tls() const { return _tls; }
    /// The listening socket, which the caller has to close.
    int release();

  private:
    int _socket = -1;
    std::uint16_t _port = 0;
    bool _isLoopback = false;
    std::shared_ptr<const TlsContext> _tls;
};

/// Serves from run() on.
///
/// Thread-safety: stop() may be called from any thread and from a signal watcher.
class Server {
  public:
    /// The options apply to all `listeners` together. REQUIRES: there is at least one.
    Server(std::vector<Listener> listeners, const Options& options, Handler handler);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Serves until stop(), and then finishes and answers the requests in progress. When it
    /// returns, all connections and body sources are gone.
    void run();
    /// Refuses new connections and requests; run() returns when the last reply is sent or `grace`
    /// is over. drained() tells which.
    void stop(std::chrono::seconds grace = std::chrono::seconds(10));
    /// After run(): false if some Work was still running at the end of the grace time. That Work
    /// runs on, and may outlive the server.
    bool drained() const;

  private:
    class Implementation;
    std::shared_ptr<Implementation> _implementation;
};

} // namespace embedded::http
