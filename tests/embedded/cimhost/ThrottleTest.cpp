// Lines that others can cause as often as they like.
#include "cimhost/Log.h"
#include "limits/Limits.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace embedded::cimhost {
namespace {

class ThrottleTest : public testing::Test {
  protected:
    void send(unsigned times, const std::string& kind) {
        while (times-- != 0)
            throttle(kind, kind);
    }
    std::string said() { return std::exchange(_said, {}); }

    Throttle::Clock::time_point now{};
    Throttle throttle{[this](const std::string& line) { _said += line + "\n"; },
                      [this] { return now; }};

  private:
    std::string _said;
};

std::string times(unsigned count, const std::string& line) {
    std::string lines;
    while (count-- != 0)
        lines += line + "\n";
    return lines;
}

TEST_F(ThrottleTest, LetsAsManyLinesOfAKindThroughInASecond) {
    send(limits::logLines - 1, "a");
    EXPECT_EQ(said(), times(limits::logLines - 1, "a"));
    send(1, "a");
    EXPECT_EQ(said(), times(1, "a"));
    send(1, "a");
    EXPECT_EQ(said(), times(0, ""));
    send(11, "b");
    EXPECT_EQ(said(), times(10, "b"));
    now += std::chrono::milliseconds(999);
    send(1, "a");
    EXPECT_EQ(said(), times(0, ""));
}

TEST_F(ThrottleTest, TellsHowManyThereWereMoreInTheNextSecond) {
    send(25, "a");
    said();
    now += std::chrono::seconds(1);
    send(1, "b");
    EXPECT_EQ(said(), "(15 more lines of this kind: a)\nb\n");
    send(10, "a");
    EXPECT_EQ(said(), times(10, "a"));
    now += std::chrono::seconds(5);
    send(1, "a");
    EXPECT_EQ(said(), times(1, "a"));
}

TEST_F(ThrottleTest, TellsTheRestAtTheEnd) {
    send(12, "a");
    send(10, "b");
    said();
    throttle.tellRest();
    EXPECT_EQ(said(), times(1, "(2 more lines of this kind: a)"));
    throttle.tellRest();
    EXPECT_EQ(said(), times(0, ""));
}

} // namespace
} // namespace embedded::cimhost
