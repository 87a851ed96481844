// Replies whose body is made piece by piece: framing, bounds, and how they fail.
#include "RawClient.h"
#include "RunningServer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

namespace embedded::http::test {
namespace {

constexpr std::size_t endless = static_cast<std::size_t>(-1);
const std::string largePiece(65536, 'x');

// What became of a body.
struct Fate {
    std::atomic<std::size_t> asked{0};
    std::atomic<bool> destroyed{false};
};

// A reply that begins with `first`, followed by `count` pieces.
struct Body {
    std::string first;
    std::size_t count = 0;
    std::string piece = largePiece;
    std::size_t failing = endless; ///< the piece that is not to be had

    Reply reply(const std::shared_ptr<Fate>& fate) const {
        const std::shared_ptr<void> end(nullptr, [fate](void*) { fate->destroyed = true; });
        Reply reply;
        reply.body = first;
        reply.rest = [*this, fate, end, next = std::size_t{0}](std::string& out) mutable {
            ++fate->asked;
            if (next == failing)
                throw std::runtime_error("no more to be had");
            if (next++ >= count)
                return false;
            out += piece;
            return true;
        };
        return reply;
    }
};

// A server that answers everything with `body`, at once or by Work.
struct Serving {
    explicit Serving(const Body& body, const Options& options = Options(), bool byWork = false)
        : running(options, [body, byWork, seen = fate](Request&&) -> Answer {
              if (byWork)
                  return Work([body, seen] { return body.reply(seen); });
              return body.reply(seen);
          }) {}

    // Whether it is, in the end.
    bool destroyed() const {
        for (int attempt = 0; attempt < 500 && !fate->destroyed; ++attempt)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        return fate->destroyed;
    }

    std::shared_ptr<Fate> fate = std::make_shared<Fate>();
    RunningServer running;
};

const std::string get = "GET / HTTP/1.1\r\nHost: h\r\n\r\n";
const std::string getAndClose = "GET / HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n";
const std::string getOld = "GET / HTTP/1.0\r\n\r\n";

std::string chunkedHeader(const std::string& connection = "") {
    return "HTTP/1.1 200 OK\r\n" + date + "Transfer-Encoding: chunked\r\n" + connection + "\r\n";
}

std::string wholeOld(const std::string& body) {
    return "HTTP/1.1 200 OK\r\n" + date + "content-length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

const std::string failed = "HTTP/1.1 500 Internal Server Error\r\n" + date +
                           "content-length: 0\r\nConnection: close\r\n\r\n";

TEST(ServerPieces, EachIsAChunk) {
    for (const bool byWork : {false, true}) {
        const Serving serving({"first", 2, "0123456789abcdef"}, Options(), byWork);
        RawClient client(serving.running.port());
        client.send(get + getAndClose);
        const std::string pieces = "5\r\nfirst\r\n10\r\n0123456789abcdef\r\n"
                                   "10\r\n0123456789abcdef\r\n0\r\n\r\n";
        EXPECT_EQ(client.rest(),
                  chunkedHeader() + pieces + chunkedHeader("Connection: close\r\n") + pieces);
    }
}

TEST(ServerPieces, AnEmptyOneDoesNotEndTheBody) {
    auto left = std::make_shared<std::vector<std::string>>(
        std::vector<std::string>{"", "c", "", "", "b", "", "a", ""});
    RunningServer running(Options(), [left](Request&&) {
        Reply reply;
        reply.rest = [left](std::string& out) {
            if (left->empty())
                return false;
            out += left->back();
            left->pop_back();
            return true;
        };
        return reply;
    });
    RawClient client(running.port());
    client.send(getAndClose);
    EXPECT_EQ(client.rest(),
              chunkedHeader("Connection: close\r\n") + "1\r\na\r\n1\r\nb\r\n1\r\nc\r\n0\r\n\r\n");
}

TEST(ServerPieces, ManyMakeOneBody) {
    const Serving serving({"", 300});
    RawClient client(serving.running.port());
    client.send(getAndClose);
    std::string expected = chunkedHeader("Connection: close\r\n");
    for (int i = 0; i < 300; ++i)
        expected += "10000\r\n" + largePiece + "\r\n";
    EXPECT_TRUE(client.rest() == expected + "0\r\n\r\n");
}

TEST(ServerPieces, ThatFailEndTheConnectionWithoutTheLastChunk) {
    const Serving serving({"first", 9, "piece", 1});
    RawClient client(serving.running.port());
    client.send(get + get);
    EXPECT_EQ(client.rest(), chunkedHeader() + "5\r\nfirst\r\n5\r\npiece\r\n");
    EXPECT_EQ(serving.running.log(), "reply cut off, GET /: no more to be had\n");
    EXPECT_TRUE(serving.destroyed());
}

TEST(ServerPieces, AreLeftOutInReplyToHead) {
    const Serving serving({"first", 2, "piece"});
    RawClient client(serving.running.port());
    client.send("HEAD / HTTP/1.1\r\nHost: h\r\n\r\nHEAD / HTTP/1.0\r\n\r\n");
    EXPECT_EQ(client.rest(), chunkedHeader() + "HTTP/1.1 200 OK\r\n" + date +
                                 "content-length: 15\r\nConnection: close\r\n\r\n");
}

TEST(ServerPieces, GoWithoutAContentLengthOfTheHandlers) {
    RunningServer running(Options(), [](Request&&) {
        Reply reply = Body{"first", 2, "piece"}.reply(std::make_shared<Fate>());
        reply.fields.emplace_back("Content-Length", "15");
        return reply;
    });
    RawClient client(running.port());
    client.send(getAndClose);
    EXPECT_EQ(client.rest(), failed);
    EXPECT_NE(running.log().find("a content length beside a body that comes in pieces"),
              std::string::npos);
}

TEST(ServerPieces, AreOneBodyForAClientThatKnowsNoChunks) {
    Options options;
    options.wholeReplyLimit = 20;
    for (const bool byWork : {false, true}) {
        const Serving serving({"first", 3, "piece"}, options, byWork);
        RawClient client(serving.running.port());
        client.send(getOld);
        EXPECT_EQ(client.rest(), wholeOld("firstpiecepiecepiece"));
    }
}

TEST(ServerPieces, BeyondTheLimitAreRefusedToAClientThatKnowsNoChunks) {
    Options options;
    options.wholeReplyLimit = 20;
    const Serving serving({"first+", endless, "piece"}, options);
    RawClient client(serving.running.port());
    client.send(getOld);
    EXPECT_EQ(client.rest(), failed);
    EXPECT_EQ(serving.running.log(), "500 for GET /: more than 20 bytes for a client that has to "
                                     "have them whole (HTTP/1.0)\n");
    EXPECT_TRUE(serving.destroyed());
    EXPECT_LE(serving.fate->asked, 3U);
}

TEST(ServerPieces, ThatAreTooManyWithWhatOthersHoldAreTurnedAway) {
    Options options;
    options.keptLimit = 200;
    const Serving serving({"first+", endless, std::string(100, 'x')}, options);
    RawClient client(serving.running.port());
    client.send(getOld);
    EXPECT_EQ(client.rest().rfind("HTTP/1.1 503 Service Unavailable\r\n", 0), 0U);
    EXPECT_EQ(serving.running.log(), "503 for GET /: too many bytes wait to be sent or handled\n");
    EXPECT_TRUE(serving.destroyed());
}

TEST(ServerPieces, UpToTheLimitAreOneBodyForAClientThatKnowsNoChunks) {
    Options options;
    options.wholeReplyLimit = 20;
    for (const std::size_t size : {19U, 20U, 21U}) {
        const std::string piece(size - 10, 'x');
        const Serving serving({"0123456789", 1, piece}, options);
        RawClient client(serving.running.port());
        client.send(getOld);
        EXPECT_EQ(client.rest(), size <= 20 ? wholeOld("0123456789" + piece) : failed) << size;
    }
}

TEST(ServerPieces, ThatFailAreA500ForAClientThatKnowsNoChunks) {
    const Serving serving({"first", 9, "piece", 1});
    RawClient client(serving.running.port());
    client.send(getOld);
    EXPECT_EQ(client.rest(), failed);
    EXPECT_EQ(serving.running.log(), "500 for GET /: no more to be had\n");
}

TEST(ServerPieces, AreNotMadeBeforeTheClientTakesThemAndItIsGivenUp) {
    Options options;
    options.requestTimeout = std::chrono::seconds(1);
    const Serving serving({"", endless}, options);
    RawClient client(serving.running.port());
    client.send(get);
    EXPECT_TRUE(serving.destroyed());
    // What the system buffers, and not more; a server that made more would make it for ever.
    EXPECT_LT(serving.fate->asked * largePiece.size(), 64U * 1024 * 1024);
    EXPECT_EQ(client.rest().find("0\r\n\r\n"), std::string::npos);
}

TEST(ServerPieces, KeepNobodyElseWaiting) {
    Options options;
    options.ioThreads = 1;
    const std::shared_ptr<Fate> fate = std::make_shared<Fate>();
    RunningServer running(options, [fate](Request&& request) -> Answer {
        if (request.target == "/endless")
            return Body{"", endless, "x"}.reply(fate);
        if (request.target == "/idle") // never has anything
            return Body{"", endless, ""}.reply(fate);
        return Reply{200, "OK", {}, "here"};
    });
    for (const std::string target : {"/endless", "/idle"}) {
        RawClient client(running.port());
        client.send("GET " + target + " HTTP/1.1\r\nHost: h\r\n\r\n");
        client.read(20);
        for (int i = 0; i < 3; ++i) {
            RawClient other(running.port());
            other.send(get);
            EXPECT_NE(other.reply().find("here"), std::string::npos) << target;
        }
    }
    running.server().stop(std::chrono::seconds(0));
    running.join();
}

TEST(ServerPieces, OfAClientThatIsGoneAreNotMade) {
    for (const bool abruptly : {false, true}) {
        const Serving serving({"", endless});
        {
            RawClient client(serving.running.port());
            client.send(get);
            client.read(1000000);
            if (abruptly)
                client.reset();
        }
        EXPECT_TRUE(serving.destroyed());
    }
}

TEST(ServerPieces, AreFinishedWithinTheGraceTime) {
    Serving serving({"", 400});
    RawClient client(serving.running.port());
    client.send(get + get);
    client.read(100);
    serving.running.server().stop(std::chrono::seconds(60));
    const std::string rest = client.rest();
    EXPECT_EQ(rest.substr(rest.size() - 9), "xx\r\n0\r\n\r\n");
    EXPECT_EQ(rest.find("HTTP"), std::string::npos);
    serving.running.join();
    EXPECT_TRUE(serving.running.server().drained());
}

TEST(ServerPieces, AreLeftAtTheEndOfTheGraceTimeAndTheirSourceDestroyed) {
    Serving serving({"", endless});
    RawClient client(serving.running.port());
    client.send(get);
    client.read(100);
    EXPECT_FALSE(serving.fate->destroyed);
    serving.running.server().stop(std::chrono::seconds(0));
    serving.running.join();
    EXPECT_TRUE(serving.fate->destroyed);
    EXPECT_TRUE(serving.running.server().drained()); // it is no handler that runs
    EXPECT_EQ(client.rest().find("(timeout)"), std::string::npos);
}

} // namespace
} // namespace embedded::http::test
