// A server on a free port with a handler whose behaviour the request's target chooses.
#pragma once

#include "http/Server.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace embedded::http::test {

/// The usual options but for some: each member is followed by what it is.
inline Options optionsWith() { return {}; }
template <class Member, class Value, class... Others>
Options optionsWith(Member Options::*member, const Value& value, const Others&... others) {
    Options options = optionsWith(others...);
    options.*member = static_cast<Member>(value);
    return options;
}

/// What a server with one listener is given.
std::vector<Listener> alone(Listener listener);

/// Targets, whose replies are made by Work: "/echo" answers with verb, target and body; "/wait"
/// does so once release() was called;
/// "/throw" throws; "/big" answers with 32 MiB; "/split" with a field that has a line break.
/// Made on the I/O thread: "/now" answers like "/echo", "/now/throw" throws.
class RunningServer {
  public:
    /// With `handler`: the test's own, and none of the above. With `tls`: on a second port, too.
    explicit RunningServer(Options options = Options(), Handler handler = nullptr,
                           std::shared_ptr<const TlsContext> tls = nullptr);
    /// Releases what waits, stops and joins.
    ~RunningServer();

    std::uint16_t port() const { return _port; }
    std::uint16_t tlsPort() const { return _tlsPort; }
    Server& server() { return *_server; }
    /// Waits until `count` requests for "/wait" are being handled.
    void awaitWaiting(unsigned count);
    /// Waits until `count` requests have reached the handler, on the I/O thread.
    void awaitAsked(unsigned count);
    void release();
    /// Waits for run() to return.
    void join();
    /// What the server has logged so far, a line each.
    std::string log() const;
    /// The last request that reached the handler.
    Request lastRequest() const;

  private:
    // Apart, because a handler that is left to itself may outlive the server and this object.
    struct Shared {
        std::mutex mutex;
        std::condition_variable changed;
        unsigned waiting = 0;
        unsigned asked = 0;
        bool released = false;
        std::string log;
        Request last;
    };
    static Reply answer(Shared& shared, const Request& request);

    std::shared_ptr<Shared> _shared = std::make_shared<Shared>();
    std::uint16_t _port;
    std::uint16_t _tlsPort = 0;
    std::unique_ptr<Server> _server;
    std::thread _thread;
};

} // namespace embedded::http::test
