// Nobody who puts something waits for whoever reads.
#include "cimhost/Log.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace embedded::cimhost {
namespace {

using std::chrono::milliseconds;
constexpr milliseconds longTime = std::chrono::minutes(1);

class LogQueueTest : public testing::Test {
  protected:
    LogQueueTest() {
        std::signal(SIGPIPE, SIG_IGN);
        if (::pipe2(_ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
    }
    ~LogQueueTest() override {
        closeReader();
        ::close(writer());
    }
    int writer() const { return _ends[1]; }
    void closeReader() {
        if (_ends[0] >= 0)
            ::close(_ends[0]);
        _ends[0] = -1;
    }
    // Until there are `size` bytes; the process is stopped by the test's time-out otherwise.
    std::string read(std::size_t size) {
        std::string text;
        while (text.size() < size) {
            std::array<char, 65536> bytes{};
            const ssize_t got = ::read(_ends[0], bytes.data(), bytes.size());
            if (got <= 0)
                throw std::runtime_error("the pipe has come to its end");
            text.append(bytes.data(), static_cast<std::size_t>(got));
        }
        return text;
    }

  private:
    std::array<int, 2> _ends{-1, -1};
};

TEST_F(LogQueueTest, WritesInOrder) {
    LogQueue queue(writer());
    std::string all;
    for (int i = 0; i < 1000; ++i) {
        queue.put(std::to_string(i) + "\n");
        all += std::to_string(i) + "\n";
    }
    EXPECT_EQ(read(all.size()), all);
    EXPECT_TRUE(queue.drain(longTime));
}

TEST_F(LogQueueTest, WritesTextsThatAreLongerThanAPipe) {
    LogQueue queue(writer());
    const std::string text = std::string(300000, 'x') + "\n";
    queue.put(text);
    EXPECT_EQ(read(text.size()), text);
}

TEST_F(LogQueueTest, DropsWhatNobodyReadsAndSaysHowMuch) {
    constexpr std::size_t limit = 1000000;
    LogQueue queue(writer(), limit);
    const std::string line(999, 'x');
    for (int i = 0; i < 5000; ++i)
        queue.put(line + "\n"); // a pipe holds 65 of them, and the queue 1,000
    EXPECT_FALSE(queue.drain(milliseconds(1)));
    for (read(limit); !queue.drain(milliseconds(0)); read(1))
        ;
    queue.put("after\n");
    std::string end;
    while (end.find("after\n") == std::string::npos)
        end += read(1);
    EXPECT_NE(end.find(" log lines were dropped: nobody read them)\nafter\n"), std::string::npos)
        << end.substr(end.size() - std::min<std::size_t>(end.size(), 200));
}

TEST_F(LogQueueTest, KeepsAsMuchAsIsTheLimit) {
    LogQueue queue(writer());
    for (const std::string& beyond : {std::string(), std::string("z")}) {
        queue.put(std::string(limits::logQueue - 1, 'x'));
        queue.put("y");
        if (!beyond.empty())
            queue.put(beyond);
        EXPECT_EQ(read(limits::logQueue), std::string(limits::logQueue - 1, 'x') + "y");
        EXPECT_TRUE(queue.drain(longTime));
        queue.put("after\n");
        const std::string after =
            beyond.empty() ? "after\n" : "(1 log lines were dropped: nobody read them)\nafter\n";
        EXPECT_EQ(read(after.size()), after);
        EXPECT_TRUE(queue.drain(longTime));
    }
}

TEST_F(LogQueueTest, CanBeGivenUpWhileItCannotWrite) {
    {
        LogQueue queue(writer());
        queue.put(std::string(500000, 'x'));
        EXPECT_FALSE(queue.drain(milliseconds(1)));
    }
    SUCCEED();
}

TEST_F(LogQueueTest, DoesWithoutAReader) {
    LogQueue queue(writer());
    closeReader();
    for (int i = 0; i < 100; ++i)
        queue.put(std::string(10000, 'x'));
    EXPECT_TRUE(queue.drain(longTime));
}

} // namespace
} // namespace embedded::cimhost
