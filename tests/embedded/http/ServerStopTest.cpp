// Listening, and coming to an end.
#include "RawClient.h"
#include "RunningServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <system_error>
#include <thread>
#include <vector>

namespace embedded::http::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::seconds;

const std::string waiting = "POST /wait HTTP/1.1\r\nContent-Length: 0\r\n\r\n";
const std::string echo = "POST /echo HTTP/1.1\r\nContent-Length: 4\r\n\r\nbody";

std::string listeningError(const std::string& address, std::uint16_t port) {
    try {
        const Listener listener(address, port);
        return "none";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(ServerStart, APortInUseIsNamedWithAddressAndReason) {
    RunningServer running;
    EXPECT_EQ(listeningError("127.0.0.1", running.port()),
              "cannot listen on 127.0.0.1:" + std::to_string(running.port()) +
                  ": Address already in use");
}

TEST(ServerStart, AnAddressThatIsNotOursIsNamed) {
    EXPECT_EQ(listeningError("192.0.2.1", 0),
              "cannot listen on 192.0.2.1:0: Cannot assign requested address");
    EXPECT_EQ(listeningError("2001:db8::1", 0).rfind("cannot listen on [2001:db8::1]:0: ", 0), 0U);
    EXPECT_EQ(listeningError("no such host", 0).rfind("cannot listen on no such host:0: ", 0), 0U);
}

TEST(ServerStart, ANameWillDoForAnAddress) { EXPECT_NE(Listener("localhost", 0).port(), 0); }

TEST(ServerStart, WhoConnectsBeforeThereIsAServerIsAnswered) {
    for (const std::string address : {"127.0.0.1", "::ffff:127.0.0.1"}) {
        Listener listener(address, 0);
        RawClient client(listener.port());
        client.send(echo);
        Server server(
            alone(std::move(listener)), Options(), [](Request&&) { return Reply(); });
        std::thread serving([&] { server.run(); });
        EXPECT_EQ(client.reply(), "HTTP/1.1 200 OK\r\n" + date + "content-length: 0\r\n\r\n");
        server.stop();
        serving.join();
    }
}

TEST(ServerStart, AListenerThatIsGivenBackLeavesThePort) {
    std::uint16_t port = 0;
    {
        const Listener listener("127.0.0.1", 0);
        port = listener.port();
    }
    EXPECT_EQ(listeningError("127.0.0.1", port), "none");
}

TEST(ServerStart, AServerThatNeverRanLeavesPortAndClients) {
    Listener listener("127.0.0.1", 0);
    const std::uint16_t port = listener.port();
    RawClient client(port);
    {
        const Server server(alone(std::move(listener)), Options(),
                            [](Request&&) { return Reply(); });
        client.send(echo);
    }
    EXPECT_TRUE(client.closed());
    EXPECT_EQ(listeningError("127.0.0.1", port), "none");
}

TEST(ServerStop, BeforeRunMakesRunReturn) {
    Server server(alone(Listener("127.0.0.1", 0)), Options(), [](Request&&) { return Reply(); });
    server.stop();
    server.run();
    EXPECT_TRUE(server.drained());
}

TEST(ServerStop, ClosesIdleConnectionsAndThoseInTheMiddleOfARequest) {
    RunningServer running;
    RawClient fresh(running.port());
    RawClient used(running.port());
    RawClient reading(running.port());
    reading.send(echo.substr(0, 10));
    used.send(echo);
    used.reply();
    running.server().stop(seconds(60));
    running.join();
    EXPECT_TRUE(running.server().drained());
    EXPECT_TRUE(fresh.closed());
    EXPECT_TRUE(used.closed());
    EXPECT_TRUE(reading.closed());
    EXPECT_THROW(RawClient(running.port()), std::system_error);
}

TEST(ServerStop, FinishesWhatIsBeingHandledAndNothingMore) {
    RunningServer running;
    RawClient busy(running.port());
    busy.send(waiting + echo);
    running.awaitWaiting(1);
    running.server().stop(seconds(60));
    // Refused at once, or closed unanswered if it came in before the stop took effect. It has to
    // say something: a connection made in the moment in which the listener goes may be known to the
    // client alone, and only what it sends lets it find out.
    try {
        RawClient late(running.port());
        late.send(echo);
        EXPECT_TRUE(late.closed());
    } catch (const std::system_error&) {
    }
    running.release();
    EXPECT_EQ(busy.rest(), "HTTP/1.1 200 OK\r\n" + date +
                               "content-length: 13\r\nConnection: close\r\n\r\nPOST /wait []");
    running.join();
    EXPECT_TRUE(running.server().drained());
}

TEST(ServerStop, AlsoFinishesWhatIsWaitingForAWorker) {
    RunningServer running(optionsWith(&Options::workers, 1));
    RawClient busy(running.port());
    busy.send(waiting);
    running.awaitWaiting(1);
    RawClient queued(running.port());
    queued.send(waiting);
    running.awaitAsked(2);
    running.server().stop(seconds(60));
    running.release();
    EXPECT_NE(queued.rest().find("/wait []"), std::string::npos);
    running.join();
    EXPECT_TRUE(running.server().drained());
}

TEST(ServerStop, LeavesAHandlerThatDoesNotReturn) {
    RunningServer running;
    RawClient busy(running.port());
    busy.send(waiting);
    running.awaitWaiting(1);
    const auto start = Clock::now();
    running.server().stop(seconds(1));
    running.join();
    EXPECT_FALSE(running.server().drained());
    EXPECT_GE(Clock::now() - start, seconds(1));
    EXPECT_LT(Clock::now() - start, seconds(5));
}

TEST(ServerStop, AgainCutsTheGraceShort) {
    RunningServer running;
    RawClient busy(running.port());
    busy.send(waiting);
    running.awaitWaiting(1);
    const auto start = Clock::now();
    running.server().stop(seconds(60));
    running.server().stop(seconds(0));
    running.join();
    EXPECT_FALSE(running.server().drained());
    EXPECT_LT(Clock::now() - start, seconds(10));
}

TEST(ServerStop, InTheMiddleOfManyClientsLosesNoReplyThatHasBegun) {
    RunningServer running;
    std::atomic<unsigned> whole{0};
    std::atomic<unsigned> torn{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i)
        clients.emplace_back([&] {
            try {
                for (int connection = 0; connection < 1000; ++connection) {
                    RawClient client(running.port());
                    std::string reply;
                    for (int request = 0; request < 5; ++request) {
                        client.send(echo);
                        reply = client.reply();
                        if (reply.find("[body]") != std::string::npos)
                            ++whole;
                        else if (!reply.empty())
                            ++torn;
                    }
                }
            } catch (const std::system_error&) {
                // The server does not listen any more.
            }
        });
    while (whole < 100)
        std::this_thread::yield();
    running.server().stop(seconds(60));
    running.join();
    for (std::thread& client : clients)
        client.join();
    EXPECT_TRUE(running.server().drained());
    EXPECT_EQ(torn, 0U);
}

} // namespace
} // namespace embedded::http::test
