// Work in lanes: one kind of it does not keep the others from being done.
#include "http/Lanes.h"

#include "RawClient.h"
#include "RunningServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace embedded::http::test {
namespace {

class LanesTest : public testing::Test {
  protected:
    /// Work that is called `name` in what happens.
    Lanes::Work work(const std::string& name, std::vector<unsigned> where,
                     Lanes::Clock::time_point until = Lanes::Clock::time_point::max()) {
        return {std::move(where), [this, name] { happened += name + " "; },
                [this, name] { happened += name + "! "; }, until};
    }

    Lanes lanes{{2, 1}};
    std::string happened;
};

TEST_F(LanesTest, StartWhatHasAPlaceAndKeepTheRest) {
    lanes.enter(work("a", {0}));
    lanes.enter(work("b", {0}));
    lanes.enter(work("c", {0}));
    EXPECT_EQ(happened, "a b ");
    lanes.leave({0});
    EXPECT_EQ(happened, "a b c ");
    EXPECT_FALSE(lanes.isWaiting());
}

TEST_F(LanesTest, KeepNothingBackThatIsInOtherLanesOrInNone) {
    lanes.enter(work("a", {1}));
    lanes.enter(work("b", {1}));
    lanes.enter(work("c", {0}));
    lanes.enter(work("d", {}));
    EXPECT_EQ(happened, "a c d ");
    EXPECT_TRUE(lanes.isWaiting());
}

TEST_F(LanesTest, StartTheLongestWaitingFirst) {
    lanes.enter(work("a", {1}));
    lanes.enter(work("b", {1}));
    lanes.enter(work("c", {1}));
    lanes.leave({1});
    lanes.leave({1});
    EXPECT_EQ(happened, "a b c ");
}

TEST_F(LanesTest, GiveAPlaceInEachLaneOrInNone) {
    lanes.enter(work("a", {1}));
    lanes.enter(work("both", {0, 1}));
    lanes.enter(work("b", {0}));
    lanes.enter(work("c", {0}));
    EXPECT_EQ(happened, "a b c ") << "what waits for the one lane holds no place in the other";
    lanes.leave({0});
    EXPECT_EQ(happened, "a b c ");
    lanes.leave({1});
    EXPECT_EQ(happened, "a b c both ");
    lanes.leave({0, 1});
    lanes.enter(work("d", {1}));
    EXPECT_EQ(happened, "a b c both d ");
}

TEST_F(LanesTest, GiveUpWhatHasWaitedTooLong) {
    const auto now = Lanes::Clock::now();
    const auto second = std::chrono::seconds(1);
    lanes.enter(work("a", {1}, now));
    lanes.enter(work("b", {1}, now + second));
    lanes.enter(work("c", {1}, now + 2 * second));
    lanes.expire(now);
    EXPECT_EQ(happened, "a ") << "what is being done is not given up";
    lanes.expire(now + second);
    EXPECT_EQ(happened, "a b! ");
    lanes.leave({1});
    EXPECT_EQ(happened, "a b! c ");
}

/// A handler whose /lane requests take a place in a lane and stay until they are let go.
class Held {
  public:
    Handler handler() {
        return [this](Request&& request) -> Answer {
            if (request.target != "/lane")
                return Work([] { return Reply{200, "OK", {}, "free"}; });
            return Work([this] { return stay(); }, {0}, _late);
        };
    }
    void awaitInside(unsigned count) {
        std::unique_lock lock(_mutex);
        _changed.wait(lock, [&] { return _inside == count; });
    }
    void letGo() {
        const std::lock_guard lock(_mutex);
        _open = true;
        _changed.notify_all();
    }
    unsigned most() const { return _most; }
    /// What waits too long is answered by the server alone.
    void haveNoAnswer() { _late = nullptr; }

  private:
    Reply stay() {
        std::unique_lock lock(_mutex);
        _most = std::max(_most, ++_inside);
        _changed.notify_all();
        _changed.wait(lock, [&] { return _open; });
        --_inside;
        return Reply{200, "OK", {}, "done"};
    }

    std::mutex _mutex;
    std::condition_variable _changed;
    std::function<Reply()> _late = [] { return Reply{200, "OK", {}, "late"}; };
    unsigned _inside = 0;
    unsigned _most = 0;
    bool _open = false;
};

std::string get(const std::string& target) {
    return "GET " + target + " HTTP/1.1\r\nHost: h\r\n\r\n";
}

Options oneLane(unsigned places) {
    Options options;
    options.lanes = {places};
    options.workers = places + 1;
    return options;
}

TEST(ServerLanes, OneThatHangsLeavesTheOtherWorkAlone) {
    Held held;
    RunningServer running(oneLane(2), held.handler());
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 10; ++i) {
        clients.push_back(std::make_unique<RawClient>(running.port()));
        clients.back()->send(get("/lane"));
    }
    held.awaitInside(2);
    RawClient other(running.port());
    other.send(get("/other"));
    EXPECT_NE(other.reply().find("free"), std::string::npos);
    held.letGo();
    for (const auto& client : clients)
        EXPECT_NE(client->reply().find("done"), std::string::npos);
    EXPECT_EQ(held.most(), 2U);
}

// The only place of a lane is taken, and nobody waits for it.
class ServerLanesLate : public testing::Test {
  protected:
    // What a second client of the lane is told; `client` is it.
    std::string told(RawClient& client) {
        _first.send(get("/lane"));
        held.awaitInside(1);
        client.send(get("/lane"));
        return client.reply();
    }
    void letGo() {
        held.letGo();
        EXPECT_NE(_first.reply().find("done"), std::string::npos);
    }

    Held held;
    RunningServer running{options(), held.handler()};

  private:
    static Options options() {
        Options result = oneLane(1);
        result.laneWait = std::chrono::seconds(0);
        return result;
    }

    RawClient _first{running.port()};
};

TEST_F(ServerLanesLate, WorkIsAnsweredAllTheSame) {
    RawClient client(running.port());
    EXPECT_NE(told(client).find("late"), std::string::npos);
    letGo();
    client.send(get("/lane"));
    EXPECT_NE(client.reply().find("done"), std::string::npos) << "the connection lives on";
}

TEST_F(ServerLanesLate, WorkWithoutAnAnswerToThatIsTurnedAway) {
    held.haveNoAnswer();
    RawClient client(running.port());
    EXPECT_NE(told(client).find("503 Service Unavailable"), std::string::npos);
    letGo();
}

TEST(ServerLanes, WorkMayLeadToWorkInAnotherLane) {
    Options options;
    options.lanes = {1, 1};
    RunningServer running(options, [](Request&&) -> Answer {
        return Work(
            []() -> Answer {
                return Work([] { return Reply{200, "OK", {}, "done"}; }, {1});
            },
            {0});
    });
    for (int i = 0; i < 3; ++i) {
        RawClient client(running.port());
        client.send(get("/"));
        EXPECT_NE(client.reply().find("done"), std::string::npos);
    }
}

} // namespace
} // namespace embedded::http::test
