#include "RunningServer.h"

#include "Certificates.h"

#include <stdexcept>
#include <utility>

namespace embedded::http::test {

std::vector<Listener> alone(Listener listener) {
    std::vector<Listener> listeners;
    listeners.push_back(std::move(listener));
    return listeners;
}

RunningServer::RunningServer(Options options, Handler handler,
                             std::shared_ptr<const TlsContext> tls) {
    std::shared_ptr<const TlsContext> first;
    if (everythingOverTls())
        first = someTls();
    std::vector<Listener> listeners = alone(Listener("127.0.0.1", 0, first));
    _port = listeners.back().port();
    if (tls) {
        listeners.emplace_back("127.0.0.1", 0, std::move(tls));
        _tlsPort = listeners.back().port();
    }
    options.log = [shared = _shared](const std::string&, const std::string& line) {
        const std::lock_guard<std::mutex> lock(shared->mutex);
        shared->log += line + "\n";
    };
    if (!handler)
        handler = [shared = _shared](Request&& request) -> Answer {
            {
                const std::lock_guard<std::mutex> lock(shared->mutex);
                ++shared->asked;
                shared->changed.notify_all();
            }
            if (request.target.rfind("/now", 0) == 0)
                return answer(*shared, request);
            return Work(
                [shared, request = std::move(request)] { return answer(*shared, request); });
        };
    _server = std::make_unique<Server>(std::move(listeners), options, std::move(handler));
    _thread = std::thread([this] { _server->run(); });
}

RunningServer::~RunningServer() {
    release();
    _server->stop();
    join();
}

void RunningServer::awaitWaiting(unsigned count) {
    std::unique_lock<std::mutex> lock(_shared->mutex);
    _shared->changed.wait(lock, [&] { return _shared->waiting >= count; });
}

void RunningServer::awaitAsked(unsigned count) {
    std::unique_lock<std::mutex> lock(_shared->mutex);
    _shared->changed.wait(lock, [&] { return _shared->asked >= count; });
}

void RunningServer::release() {
    const std::lock_guard<std::mutex> lock(_shared->mutex);
    _shared->released = true;
    _shared->changed.notify_all();
}

void RunningServer::join() {
    if (_thread.joinable())
        _thread.join();
}

std::string RunningServer::log() const {
    const std::lock_guard<std::mutex> lock(_shared->mutex);
    return _shared->log;
}

Request RunningServer::lastRequest() const {
    const std::lock_guard<std::mutex> lock(_shared->mutex);
    return _shared->last;
}

Reply RunningServer::answer(Shared& shared, const Request& request) {
    {
        std::unique_lock<std::mutex> lock(shared.mutex);
        shared.last = request;
        if (request.target == "/wait") {
            ++shared.waiting;
            shared.changed.notify_all();
            shared.changed.wait(lock, [&] { return shared.released; });
        }
    }
    Reply reply;
    if (request.target == "/throw" || request.target == "/now/throw")
        throw std::runtime_error("the handler gave up");
    if (request.target == "/split")
        reply.fields.emplace_back("X-Text", "one\r\nX-Forged: two");
    if (request.target == "/big")
        reply.body.assign(32 * 1024 * 1024, 'x');
    else
        reply.body = request.verb + " " + request.target + " [" + request.body + "]";
    return reply;
}

} // namespace embedded::http::test
