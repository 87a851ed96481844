// Several I/O threads: connections are shared out among them, and none is left behind.
#include "RawClient.h"
#include "RunningServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>
#include <vector>

namespace embedded::http::test {
namespace {

const std::string get = "GET /now HTTP/1.1\r\nHost: h\r\n\r\n";

// The threads on which requests are handled.
struct Threads {
    std::mutex mutex;
    std::set<std::thread::id> seen;

    std::string here() {
        const std::lock_guard<std::mutex> lock(mutex);
        seen.insert(std::this_thread::get_id());
        return std::to_string(std::hash<std::thread::id>()(std::this_thread::get_id()));
    }
};

TEST(ServerThreads, ShareOutTheConnectionsAndKeepThem) {
    Options options;
    options.ioThreads = 3;
    const auto threads = std::make_shared<Threads>();
    RunningServer running(options, [threads](Request&&) {
        return Reply{200, "OK", {}, threads->here()};
    });
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 9; ++i) {
        clients.push_back(std::make_unique<RawClient>(running.port()));
        clients.back()->send(get + get);
        EXPECT_EQ(clients.back()->reply(), clients.back()->reply());
    }
    EXPECT_EQ(threads->seen.size(), 3U);
}

TEST(ServerThreads, AreAsManyAsThereAreCoresUpToFour) {
    const auto threads = std::make_shared<Threads>();
    RunningServer running(Options(), [threads](Request&&) {
        return Reply{200, "OK", {}, threads->here()};
    });
    for (int i = 0; i < 16; ++i) {
        RawClient client(running.port());
        client.send(get);
        client.reply();
    }
    const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
    EXPECT_EQ(threads->seen.size(), std::min(4U, cores));
}

TEST(ServerThreads, CountTheirConnectionsTogether) {
    RunningServer running(optionsWith(&Options::ioThreads, 4, &Options::connectionLimit, 4));
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 4; ++i) {
        clients.push_back(std::make_unique<RawClient>(running.port()));
        clients.back()->send("POST /wait HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
    }
    running.awaitWaiting(4);
    RawClient fifth(running.port());
    EXPECT_NE(fifth.rest().find("503 Service Unavailable"), std::string::npos);
}

// Everything that a connection can be busy with, on each thread, while the server ends.
TEST(ServerThreads, EndTogetherAndLoseNoReplyThatHasBegun) {
    Options options;
    options.ioThreads = 3;
    RunningServer running(options, [](Request&& request) -> Answer {
        if (request.target == "/now")
            return Reply{200, "OK", {}, "done"};
        if (request.target == "/work")
            return Work([] { return Reply{200, "OK", {}, "done"}; });
        Reply reply;
        reply.rest = [left = 20](std::string& out) mutable {
            if (left == 0)
                return false;
            out += --left == 0 ? "done" : std::string(1000, 'x');
            return true;
        };
        return reply;
    });
    std::atomic<unsigned> whole{0};
    std::atomic<unsigned> torn{0};
    std::vector<std::thread> clients;
    for (const std::string target : {"/now", "/work", "/pieces", "/now", "/work", "/pieces"})
        clients.emplace_back([&, target] {
            try {
                for (int connection = 0; connection < 1000; ++connection) {
                    RawClient client(running.port());
                    client.send("GET " + target + " HTTP/1.1\r\nConnection: close\r\n\r\n");
                    const std::string reply = client.rest();
                    if (reply.find("done") != std::string::npos)
                        ++whole;
                    else if (!reply.empty())
                        ++torn;
                }
            } catch (const std::system_error&) {
                // The server does not listen any more.
            }
        });
    while (whole < 100)
        std::this_thread::yield();
    running.server().stop(std::chrono::seconds(60));
    running.join();
    for (std::thread& client : clients)
        client.join();
    EXPECT_TRUE(running.server().drained());
    EXPECT_EQ(torn, 0U);
}

} // namespace
} // namespace embedded::http::test
