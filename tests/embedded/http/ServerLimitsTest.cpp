// What the server does with requests it cannot read, with too many, too large or too slow ones.
#include "RawClient.h"
#include "RunningServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace embedded::http::test {
namespace {

const std::string whole = "POST /echo HTTP/1.1\r\nHost: h\r\nContent-Length: 4\r\n\r\nbody";

std::string closing(const std::string& status) {
    return "HTTP/1.1 " + status + "\r\n" + date + "content-length: 0\r\nConnection: close\r\n\r\n";
}

bool serves(RunningServer& running) {
    RawClient client(running.port());
    client.send(whole);
    return client.reply().find("[body]") != std::string::npos;
}

std::string repeated(const std::string& text, unsigned times) {
    std::string all;
    while (times-- != 0)
        all += text;
    return all;
}

unsigned counted(const std::string& what, const std::string& text) {
    unsigned count = 0;
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; ++at)
        ++count;
    return count;
}

struct RefusedCase {
    const char* name;
    std::string request;
    const char* status;
};

// More of them are in tests/faults/clients_test.py.
class Refused : public testing::TestWithParam<RefusedCase> {};

TEST_P(Refused, IsAnsweredAndTheConnectionClosed) {
    RunningServer running(optionsWith(&Options::bodyLimit, 1000, &Options::headerLimit, 500));
    RawClient client(running.port());
    client.send(GetParam().request + whole);
    EXPECT_EQ(client.rest(), closing(GetParam().status));
    EXPECT_TRUE(serves(running));
}

const std::string start = "POST /echo HTTP/1.1\r\nHost: h\r\n";

INSTANTIATE_TEST_SUITE_P(
    Server, Refused,
    testing::Values(
        RefusedCase{"NoVersion", "POST /echo\r\n\r\n", "400 Bad Request"},
        RefusedCase{"NoTarget", "POST HTTP/1.1\r\n\r\n", "400 Bad Request"},
        RefusedCase{"SpaceInName", start + "A b: c\r\n\r\n", "400 Bad Request"},
        RefusedCase{"ChunkedTwice",
                    start + "Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n\r\n",
                    "400 Bad Request"},
        RefusedCase{"LengthAndOtherCoding",
                    start + "Content-Length: 4\r\nTransfer-Encoding: gzip, chunked\r\n\r\n",
                    "400 Bad Request"},
        RefusedCase{"ManyLongLinesOfChunks",
                    start + "Transfer-Encoding: chunked\r\n\r\n" +
                        repeated("1;" + std::string(400, 'a') + "\r\nx\r\n", 5),
                    "413 Request Entity Too Large"},
        RefusedCase{"LargeBodyAnnounced",
                    start + "Expect: 100-continue\r\nContent-Length: 1001\r\n\r\n",
                    "413 Request Entity Too Large"}),
    [](const auto& rule) { return rule.param.name; });

TEST(ServerLimits, ABodyUpToTheLimitIsTaken) {
    RunningServer running(optionsWith(&Options::bodyLimit, 4));
    EXPECT_TRUE(serves(running));
}

TEST(ServerLimits, ALargeBodyThatKeepsComingDoesNotHideTheAnswer) {
    RunningServer running(optionsWith(&Options::bodyLimit, 1000));
    RawClient client(running.port());
    client.send("POST /echo HTTP/1.1\r\nContent-Length: 9000000\r\n\r\n");
    // A reset instead would make some systems drop the answer.
    EXPECT_TRUE(client.send(std::string(9000000, 'x')));
    client.closeSending();
    EXPECT_EQ(client.rest(), closing("413 Request Entity Too Large"));
}

TEST(ServerLimits, ARequestCutOffAtAnyByteIsRefusedAndHarmsNobody) {
    RunningServer running;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        RawClient client(running.port());
        client.send(whole.substr(0, size));
        client.closeSending();
        EXPECT_EQ(client.rest(), size == 0 ? "" : closing("400 Bad Request")) << size;
    }
    EXPECT_TRUE(serves(running));
}

TEST(ServerLimits, AConnectionResetAtAnyByteHarmsNobody) {
    RunningServer running;
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        RawClient client(running.port());
        client.send(whole.substr(0, size));
        client.reset();
    }
    EXPECT_TRUE(serves(running));
}

TEST(ServerLimits, AClientThatHasClosedItsSideIsStillAnswered) {
    RunningServer running;
    RawClient client(running.port());
    client.send(whole + whole);
    client.closeSending();
    const std::string answer =
        "HTTP/1.1 200 OK\r\n" + date + "content-length: 17\r\n\r\nPOST /echo [body]";
    EXPECT_EQ(client.rest(), answer + answer);
}

TEST(ServerLimits, AClientThatIsGoneBeforeItsReplyHarmsNobody) {
    RunningServer running;
    for (const bool abruptly : {false, true}) {
        RawClient client(running.port());
        client.send("POST /wait HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
        running.awaitWaiting(abruptly ? 2 : 1);
        if (abruptly)
            client.reset();
    }
    running.release();
    EXPECT_TRUE(serves(running));
}

TEST(ServerLimits, ARequestThatDoesNotEndIsToldSo) {
    RunningServer running(optionsWith(&Options::requestTimeout, std::chrono::seconds(1)));
    for (const std::size_t size : {std::size_t(5), whole.size() - 1}) {
        RawClient client(running.port());
        client.send(whole.substr(0, size));
        EXPECT_EQ(client.rest(), closing("408 Request Timeout"));
    }
}

TEST(ServerLimits, ARequestMayTakeLongerToAnswerThanToRead) {
    RunningServer running(optionsWith(&Options::requestTimeout, std::chrono::seconds(1)));
    RawClient busy(running.port());
    busy.send("POST /wait HTTP/1.1\r\nHost: h\r\n\r\n");
    running.awaitWaiting(1);
    RawClient late(running.port()); // whose own time is over after that of the first
    late.send("POST /echo HTTP/1.1\r\n");
    EXPECT_EQ(late.rest(), closing("408 Request Timeout"));
    running.release();
    EXPECT_NE(busy.reply().find("/wait"), std::string::npos);
}

TEST(ServerLimits, AnIdleConnectionIsClosedInSilence) {
    RunningServer running(optionsWith(&Options::idleTimeout, std::chrono::seconds(1)));
    RawClient fresh(running.port());
    RawClient used(running.port());
    used.send(whole);
    EXPECT_NE(used.reply().find("[body]"), std::string::npos);
    EXPECT_TRUE(fresh.closed());
    EXPECT_TRUE(used.closed());
}

TEST(ServerLimits, AClientThatTakesNoReplyIsGivenUp) {
    RunningServer running(optionsWith(&Options::requestTimeout, std::chrono::seconds(1),
                                      &Options::connectionLimit, 1));
    RawClient client(running.port());
    client.send("POST /big HTTP/1.1\r\nHost: h\r\n\r\n");
    bool free = false; // the one place is taken until the client is given up
    for (int tries = 0; !free && tries < 1200; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        free = serves(running);
    }
    EXPECT_TRUE(free);
    EXPECT_LT(client.rest().size(), 32U * 1024 * 1024);
}

TEST(ServerLimits, ALongReplyArrivesWhole) {
    RunningServer running;
    RawClient client(running.port());
    client.send("POST /big HTTP/1.1\r\nHost: h\r\n\r\n");
    EXPECT_EQ(
        client.reply().size(),
        std::string("HTTP/1.1 200 OK\r\n" + date + "content-length: 33554432\r\n\r\n").size() +
            33554432);
}

TEST(ServerLimits, ASlowHandlerKeepsNobodyElseWaiting) {
    RunningServer running;
    RawClient slow(running.port());
    slow.send("POST /wait HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
    running.awaitWaiting(1);
    EXPECT_TRUE(serves(running));
}

TEST(ServerLimits, WhatNeedsNoWorkerDoesNotWaitForOne) {
    RunningServer running(optionsWith(&Options::workers, 1, &Options::ioThreads, 1));
    RawClient slow(running.port());
    slow.send("POST /wait HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
    running.awaitWaiting(1);
    RawClient second(running.port());
    second.send("GET /now HTTP/1.1\r\n\r\n");
    EXPECT_NE(second.reply().find("GET /now []"), std::string::npos);
}

TEST(ServerLimits, RequestsBeyondTheWorkersWaitTheirTurn) {
    RunningServer running(optionsWith(&Options::workers, 1));
    RawClient slow(running.port());
    slow.send("POST /wait HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
    running.awaitWaiting(1);
    RawClient second(running.port());
    second.send(whole);
    running.release();
    EXPECT_NE(slow.reply().find("/wait []"), std::string::npos);
    EXPECT_NE(second.reply().find("[body]"), std::string::npos);
}

TEST(ServerLimits, AConnectionBeyondTheLimitIsTurnedAway) {
    RunningServer running(optionsWith(&Options::connectionLimit, 2));
    {
        RawClient first(running.port());
        RawClient second(running.port());
        for (RawClient* client : {&first, &second})
            client->send("POST /wait HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
        running.awaitWaiting(2);
        RawClient third(running.port());
        EXPECT_EQ(third.rest(), "HTTP/1.1 503 Service Unavailable\r\n" + date +
                                    "Retry-After: 1\r\ncontent-length: 0\r\n"
                                    "Connection: close\r\n\r\n");
        running.release();
        for (RawClient* client : {&first, &second})
            EXPECT_NE(client->reply().find("/wait []"), std::string::npos);
    }
    EXPECT_TRUE(serves(running));
}

TEST(ServerLimits, TheConnectionThatHasWaitedLongestGivesWay) {
    // what was first is seen first
    RunningServer running(optionsWith(&Options::connectionLimit, 2, &Options::ioThreads, 1));
    RawClient first(running.port());
    RawClient second(running.port());
    for (RawClient* client : {&first, &second, &first}) {
        client->send(whole);
        EXPECT_NE(client->reply().find("[body]"), std::string::npos);
    }
    EXPECT_TRUE(serves(running));
    EXPECT_TRUE(second.closed());
    first.send(whole);
    EXPECT_NE(first.reply().find("[body]"), std::string::npos);
    EXPECT_NE(running.log().find("waited longest"), std::string::npos);
}

TEST(ServerLimits, TheAddressWithMostConnectionsGivesWayFirst) {
    // what was first is seen first
    RunningServer running(optionsWith(&Options::connectionLimit, 3, &Options::ioThreads, 1));
    RawClient alone(running.port(), "127.0.0.2");
    RawClient first(running.port());
    RawClient second(running.port());
    for (RawClient* client : {&alone, &first, &second}) {
        client->send(whole);
        EXPECT_NE(client->reply().find("[body]"), std::string::npos);
    }
    RawClient third(running.port(), "127.0.0.3");
    EXPECT_TRUE(first.closed()) << "it is one of two, and has waited longer than the other";
    for (RawClient* client : {&alone, &second, &third}) {
        client->send(whole);
        EXPECT_NE(client->reply().find("[body]"), std::string::npos);
    }
}

TEST(ServerLimits, AsManyGiveWayAsCome) {
    RunningServer running(optionsWith(&Options::connectionLimit, 100, &Options::ioThreads, 2));
    std::vector<std::unique_ptr<RawClient>> crowd;
    for (unsigned i = 0; i < 300; ++i)
        crowd.push_back(std::make_unique<RawClient>(running.port()));
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    // A few may be turned away, when those that could give way are not known to wait yet.
    const auto gone = [&] {
        const std::string log = running.log();
        return counted("waited longest", log) + counted(": 503 ", log);
    };
    while (gone() < 200 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    unsigned served = 0;
    for (const auto& client : crowd) {
        client->send(whole);
        served += counted("[body]", client->reply());
    }
    EXPECT_EQ(served, 100U);
}

TEST(ServerLimits, WhoComesWhileTooManyAreTurnedAwayWaits) {
    RunningServer running(optionsWith(&Options::connectionLimit, 1));
    RawClient busy(running.port());
    busy.send("POST /wait HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
    running.awaitWaiting(1);
    std::vector<std::unique_ptr<RawClient>> crowd;
    for (unsigned i = 0; i < 200; ++i)
        crowd.push_back(std::make_unique<RawClient>(running.port()));
    for (const auto& client : crowd) {
        EXPECT_EQ(client->reply().rfind("HTTP/1.1 503 ", 0), 0U);
        client->closeSending();
    }
    running.release();
    EXPECT_NE(busy.reply().find("/wait []"), std::string::npos);
}

TEST(ServerLimits, AConnectionWithHalfARequestGivesWayToo) {
    // what was first is seen first
    RunningServer running(optionsWith(&Options::connectionLimit, 2, &Options::ioThreads, 1));
    RawClient idle(running.port());
    RawClient half(running.port());
    half.send(whole.substr(0, 20));
    RawClient third(running.port());
    EXPECT_TRUE(idle.closed()) << "an idle one comes first";
    third.send(whole);
    EXPECT_NE(third.reply().find("[body]"), std::string::npos);
    third.send("POST /wait HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
    running.awaitWaiting(1);
    EXPECT_TRUE(serves(running));
    EXPECT_EQ(half.rest(), closing("408 Request Timeout"));
    running.release();
    EXPECT_NE(third.reply().find("/wait []"), std::string::npos);
}

TEST(ServerLimits, RequestsThatAreTooLargeTogetherAreTurnedAway) {
    const auto request = [](const std::string& target, std::size_t size) {
        const std::string header =
            "POST " + target + " HTTP/1.1\r\nConnection: close\r\nContent-Length: ";
        const std::size_t body = size - header.size() - 8; // four digits, two line ends
        return header + std::to_string(body) + "\r\n\r\n" + std::string(body, 'a');
    };
    RunningServer running(optionsWith(&Options::keptLimit, 4000));
    RawClient first(running.port());
    first.send(request("/wait", 2000));
    running.awaitWaiting(1);
    for (const std::size_t size : {1999U, 2000U}) {
        RawClient second(running.port());
        second.send(request("/echo", size));
        EXPECT_NE(second.rest().find("/echo [aa"), std::string::npos) << size;
    }
    RawClient second(running.port());
    second.send(request("/echo", 2001));
    EXPECT_EQ(second.rest(), closing("503 Service Unavailable"));
    EXPECT_TRUE(serves(running)) << "there is room for a small one";
    running.release();
    EXPECT_NE(first.rest().find("/wait [aa"), std::string::npos);
    RawClient third(running.port());
    third.send(request("/echo", 2001));
    EXPECT_NE(third.rest().find("/echo [aa"), std::string::npos);
}

TEST(ServerLimits, AFewAreToldThatThereAreTooManyConnections) {
    RunningServer running(optionsWith(&Options::connectionLimit, 1, &Options::refusalLimit, 2,
                                      &Options::refusalTime, std::chrono::hours(1)));
    RawClient busy(running.port());
    busy.send("POST /wait HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
    running.awaitWaiting(1);
    RawClient first(running.port());
    EXPECT_EQ(first.rest().find("HTTP/1.1 503 "), 0U);
    RawClient second(running.port());
    EXPECT_EQ(second.rest().find("HTTP/1.1 503 "), 0U);
    RawClient third(running.port());
    EXPECT_TRUE(third.hearsNothing()) << "it waits to be accepted";
    first.reset();
    EXPECT_EQ(third.rest().find("HTTP/1.1 503 "), 0U);
}

TEST(ServerLimits, WhatIsSentAfterARefusalIsReadForAWhile) {
    Options options;
    options.bodyLimit = 1000;
    options.refusalTime = std::chrono::seconds(1);
    RunningServer running(options);
    RawClient client(running.port());
    const auto began = std::chrono::steady_clock::now();
    client.send("POST /echo HTTP/1.1\r\nContent-Length: 9000000\r\n\r\n");
    while (client.send(std::string(1000, 'x'))) // the test's time-out ends one that is always read
        ;
    EXPECT_GE(std::chrono::steady_clock::now() - began, options.refusalTime);
}

TEST(ServerLimits, AClientThatTakesItsReplySlowlyHasTimeForEachPart) {
    constexpr std::size_t size = 32 * limits::MiB; // of the reply, beside its header
    for (const std::size_t part : {64 * limits::KiB, size + limits::MiB}) {
        Options options;
        options.requestTimeout = std::chrono::seconds(2);
        options.leastTaken = part;
        RunningServer running(options);
        RawClient client(running.port());
        client.send("POST /big HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n");
        std::size_t taken = 0;
        for (std::size_t got = 1; got != 0; taken += got) {
            got = client.read(4 * limits::MiB).size();
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
        }
        EXPECT_EQ(taken > size, part < size) << taken;
    }
}

// What tests have with options of their own, cimhost has with those that are not changed.
TEST(ServerLimits, AreThoseThatAreWrittenDown) {
    const Options options;
    EXPECT_EQ(options.laneWait, limits::patience);
    EXPECT_EQ(options.connectionLimit, limits::connections);
    EXPECT_EQ(options.refusalLimit, limits::refusals);
    EXPECT_EQ(options.refusalTime, limits::refusalTime);
    EXPECT_EQ(options.bodyLimit, limits::body);
    EXPECT_EQ(options.headerLimit, limits::header);
    EXPECT_EQ(options.wholeReplyLimit, limits::wholeReply);
    EXPECT_EQ(options.keptLimit, limits::allRequests);
    EXPECT_EQ(options.idleTimeout, limits::idleTime);
    EXPECT_EQ(options.requestTimeout, limits::requestTime);
    EXPECT_EQ(options.leastTaken, limits::leastTaken);
}

} // namespace
} // namespace embedded::http::test
