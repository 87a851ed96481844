// An HTTP/1.1 server for one kind of service: a request goes to one handler, its reply comes back
// on the same connection. Knows nothing of CIM.
#pragma once

#include "http/Fields.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace embedded::http {

struct Request {
    std::string verb; ///< "POST", "M-POST", ... as it came
    std::string target;
    unsigned version = 11; ///< 10 or 11
    Fields fields;
    std::string body;
};

/// The server adds Date, and what the connection needs (the content length when it is not among
/// `fields`, Connection when it closes); everything else is the handler's.
struct Reply {
    unsigned status = 200;
    std::string reason = "OK";
    Fields fields;
    std::string body;
};

/// Called on a worker thread, several at once. What it throws becomes a 500 and a line in the log.
using Handler = std::function<Reply(const Request&)>;

struct Options {
    unsigned workers = 16;                                    ///< threads that run the handler
    unsigned connectionLimit = 512;                           ///< beyond it the reply is 503
    std::uint64_t bodyLimit = std::uint64_t{8} * 1024 * 1024; ///< bytes; beyond it the reply is 413
    std::uint32_t headerLimit = std::uint32_t{64} * 1024;     ///< bytes; beyond it the reply is 431
    std::chrono::seconds idleTimeout{300};   ///< for the next request on a connection
    std::chrono::seconds requestTimeout{30}; ///< for the rest of a request that has begun
    /// Takes a line for whoever runs the server. Called on any thread, one call at a time.
    std::function<void(const std::string&)> log;
};

/// Listens from its construction on, so that the port is known, and clients may connect, before
/// there is anything that could answer: a Server, which takes it over.
class Listener {
  public:
    /// `address`: a number or a name; `port` 0: any free one. Throws std::runtime_error that says
    /// address, port and reason.
    Listener(const std::string& address, std::uint16_t port);
    ~Listener();
    Listener(Listener&& other) noexcept;
    Listener& operator=(Listener&&) = delete;

    /// The port in use.
    std::uint16_t port() const { return _port; }
    /// The listening socket, from now on the caller's to close.
    int release();

  private:
    int _socket = -1;
    std::uint16_t _port = 0;
};

/// Serves from run() on.
///
/// Thread-safety: stop() may be called from any thread and from a signal watcher.
class Server {
  public:
    Server(Listener listener, const Options& options, Handler handler);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Serves until stop(). Requests that are being handled then are finished and answered.
    void run();
    /// No new connections or requests; makes run() return when the last handler has returned or
    /// `grace` is over, whichever comes first. run() says which: see drained().
    void stop(std::chrono::seconds grace = std::chrono::seconds(10));
    /// After run(): false when a handler was still running at the end of the grace time.
    bool drained() const;

  private:
    class Implementation;
    std::shared_ptr<Implementation> _implementation;
};

} // namespace embedded::http
