// Bytes to the HTTP server, in pieces: a byte FE is not sent, the piece ends there. The replies are
// well-formed, one for each request in their order, the same wherever the bytes are cut (but for
// which of several faults a request is refused for), and the connection ends.
#include "fuzz/Fuzz.h"

#include "http/Server.h"

#include <arpa/inet.h>
#include <array>
#include <atomic>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace embedded::http;
using fuzz::require;

constexpr char cut = '\xFE';
constexpr int patience = 20000; // milliseconds

std::atomic<unsigned> handled{0}; // requests on the present connection

// What is asked, and which request it is. The target says how the reply is made.
Reply replyTo(const Request& request, unsigned number) {
    Reply reply{200,
                "OK",
                {{"X-Number", std::to_string(number)}, {"X-Verb", request.verb}},
                request.verb + " " + request.target + "\n" + request.body};
    const auto asked = [&](const char* word) {
        return request.target.find(word) != std::string::npos;
    };
    if (asked("throw"))
        throw std::runtime_error("asked for");
    if (asked("rest")) {
        reply.rest = [broken = asked("broken"), left = 3](std::string& out) mutable {
            if (left == 1 && broken)
                throw std::runtime_error("asked for");
            out += left == 2 ? "" : "piece";
            return left-- != 0;
        };
    }
    return reply;
}

Answer answer(Request&& request) {
    const unsigned number = ++handled;
    if (request.target.find("work") == std::string::npos)
        return replyTo(request, number);
    return Work([request = std::move(request), number] { return replyTo(request, number); });
}

class RunningServer {
  public:
    RunningServer() : _server(listeners(), options(), answer) {}
    ~RunningServer() {
        _server.stop();
        _thread.join();
    }
    std::uint16_t port() const { return _port; }

  private:
    std::vector<Listener> listeners() {
        std::vector<Listener> made;
        _port = made.emplace_back("127.0.0.1", std::uint16_t{0}).port();
        return made;
    }
    static Options options() {
        Options options;
        options.ioThreads = 1;
        options.workers = 1;
        options.headerLimit = 1024;
        options.bodyLimit = 1536;
        options.wholeReplyLimit = 256;
        return options;
    }

    std::uint16_t _port = 0;
    Server _server;
    std::thread _thread{[this] { _server.run(); }};
};

/// What `call` returns when no signal has interrupted it; libFuzzer has an alarm.
template <class Call>
auto uninterrupted(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

template <class Ask>
std::uint16_t portBy(Ask ask, int socket) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    return ask(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0 ? ntohs(address.sin_port)
                                                                          : std::uint16_t{0};
}

class Client {
  public:
    explicit Client(std::uint16_t port) : _socket(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const int connected = uninterrupted([&] {
            return ::connect(_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        });
        require(connected == 0 || errno == EISCONN, "the server is there");
        while (_accepted == 0)
            find();
    }
    ~Client() { ::close(_socket); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    // Returns when the server has read all, or will read no more.
    void send(std::string_view piece) {
        if (!piece.empty())
            uninterrupted(
                [&] { return ::send(_socket, piece.data(), piece.size(), MSG_NOSIGNAL); });
        for (int waiting = 1; ::ioctl(_accepted, FIONREAD, &waiting) == 0 && waiting > 0;)
            ::sched_yield();
    }

    // What the server sends until it closes.
    std::string rest() {
        ::shutdown(_socket, SHUT_WR);
        std::string all;
        while (true) {
            pollfd waiting{_socket, POLLIN, 0};
            require(uninterrupted([&] { return ::poll(&waiting, 1, patience); }) == 1,
                    "the connection ends", all);
            std::array<char, 65536> bytes;
            const ssize_t size =
                uninterrupted([&] { return ::recv(_socket, bytes.data(), bytes.size(), 0); });
            if (size <= 0)
                return all;
            all.append(bytes.data(), static_cast<std::size_t>(size));
        }
    }

  private:
    // The server's end of this connection, which it has in this process.
    void find() {
        const std::uint16_t own = portBy(::getsockname, _socket);
        for (int other = 3; other < 256 && _accepted == 0; ++other)
            if (portBy(::getpeername, other) == own)
                _accepted = other;
        ::sched_yield();
    }

    int _socket;
    int _accepted = 0;
};

struct SeenReply {
    std::string header; // status line and fields but for Date
    std::string body;
    bool closes = false;

    // What closes without being the handler's.
    bool refuses() const {
        return closes && header.find("X-Number: ") == std::string::npos && header[9] == '4';
    }
    bool operator==(const SeenReply& other) const {
        return (header == other.header && body == other.body) || (refuses() && other.refuses());
    }
};

// Takes the bytes of one connection apart.
class Replies {
  public:
    explicit Replies(const std::string& all) : _all(all), _left(all) {
        while (!_left.empty())
            take();
    }

    std::vector<SeenReply> seen;

  private:
    void expect(bool holds, const char* rule) const { require(holds, rule, _all); }

    std::string_view line() {
        const std::size_t end = _left.find("\r\n");
        expect(end != std::string_view::npos, "a line of a reply ends");
        const std::string_view found = _left.substr(0, end);
        _left.remove_prefix(end + 2);
        return found;
    }

    void take() {
        expect(seen.empty() || !seen.back().closes, "nothing follows the reply that closes");
        const std::string_view status = line();
        expect(status.size() > 12 && status.substr(0, 9) == "HTTP/1.1 " && status[12] == ' ',
               "a reply begins with a status line");
        if (status == "HTTP/1.1 100 Continue") {
            expect(line().empty(), "an interim reply has no fields");
            return;
        }
        SeenReply reply;
        reply.header.append(status).append("\n");
        std::size_t length = std::string::npos;
        bool chunked = false;
        bool toHead = false;
        unsigned dates = 0;
        unsigned framings = 0;
        for (std::string_view field = line(); !field.empty(); field = line()) {
            const std::size_t colon = field.find(':');
            expect(colon != std::string_view::npos && colon != 0, "a field has a name");
            if (field.substr(0, 6) == "Date: ") {
                ++dates;
                continue;
            }
            reply.header.append(field).append("\n");
            if (field.substr(0, 16) == "content-length: ") {
                length = std::stoul(std::string(field.substr(16)));
                ++framings;
            }
            if (field == "Transfer-Encoding: chunked") {
                chunked = true;
                ++framings;
            }
            toHead |= field == "X-Verb: HEAD";
            reply.closes |= field == "Connection: close";
            if (field.substr(0, 10) == "X-Number: ")
                expect(field.substr(10) == std::to_string(seen.size() + 1),
                       "replies come in the order of their requests");
        }
        expect(dates == 1, "a reply has one date");
        expect(framings == 1, "a reply says once how long its body is");
        if (chunked && !toHead)
            takeChunks(reply);
        else if (!toHead)
            takeBody(reply, length);
        seen.push_back(std::move(reply));
    }

    void takeBody(SeenReply& reply, std::size_t size) {
        expect(size <= _left.size(), "a body is whole");
        reply.body.append(_left.substr(0, size));
        _left.remove_prefix(size);
    }

    // A body may be cut off where its source has failed; nothing follows then.
    void takeChunks(SeenReply& reply) {
        while (!_left.empty()) {
            const std::size_t size = std::stoul(std::string(line()), nullptr, 16);
            takeBody(reply, size);
            expect(line().empty(), "a chunk ends with its line");
            if (size == 0)
                return;
        }
        expect(reply.body.find("broken") != std::string::npos, "a body in pieces has an end");
        reply.closes = true;
    }

    std::string_view _all;
    std::string_view _left;
};

std::vector<SeenReply> played(const RunningServer& server, std::string_view bytes, bool inPieces) {
    handled = 0;
    Client client(server.port());
    std::string piece;
    for (const char byte : bytes)
        if (byte != cut)
            piece += byte;
        else if (inPieces)
            client.send(std::exchange(piece, ""));
    client.send(piece);
    const std::string all = client.rest();
    const Replies replies(all);
    const std::size_t asked = handled;
    require(replies.seen.size() == asked || replies.seen.size() == asked + 1,
            "each request has a reply, and what is none has at most one", all);
    require(replies.seen.size() == asked || replies.seen.back().closes,
            "what is no request is the last", all);
    return replies.seen;
}

std::string shown(const std::vector<SeenReply>& replies) {
    std::string text;
    for (const SeenReply& reply : replies)
        text += reply.header + "\n" + reply.body + "\n--\n";
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const RunningServer server;
    const std::string bytes(data, data + size);
    const std::vector<SeenReply> whole = played(server, bytes, false);
    if (bytes.find(cut) == std::string::npos)
        return 0;
    const std::vector<SeenReply> pieces = played(server, bytes, true);
    require(whole == pieces, "the replies are the same wherever the bytes are cut",
            shown(whole) + "== in pieces:\n" + shown(pieces));
    return 0;
}
