// What of requests and replies gets into the files of the wire trace.
#include "cimhost/WireTrace.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace embedded::cimhost {
namespace {

class WireTrace : public testing::Test {
  protected:
    WireTrace() {
        std::string name = testing::TempDir() + "wire-trace-XXXXXX";
        if (!::mkdtemp(name.data()))
            throw std::runtime_error("cannot make a directory like " + name);
        _directory = name;
    }
    ~WireTrace() override { std::filesystem::remove_all(_directory); }

    http::Reply reply(const http::Handler& handler) {
        const http::Handler tracing =
            traced(handler, _directory.string(), [](const std::string& line) { FAIL() << line; });
        http::Answer answer = tracing(
            http::Request{"POST", "/", 11, {{"Host", "h"}, {"Authorization", "Basic x"}}, "ask"});
        if (const http::Work* work = std::get_if<http::Work>(&answer))
            return (*work)();
        return std::get<http::Reply>(std::move(answer));
    }
    std::string file(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(_directory / name).rdbuf();
        return text.str();
    }

  private:
    std::filesystem::path _directory;
};

TEST_F(WireTrace, HasRequestAndReplyWithoutCredentials) {
    for (const bool byWork : {false, true}) {
        const auto make = [] {
            return http::Reply{200, "OK", {{"Ext", ""}, {"A", "b"}}, "answer"};
        };
        reply([&](http::Request&&) -> http::Answer {
            return byWork ? http::Answer(http::Work(make)) : http::Answer(make());
        });
        EXPECT_EQ(file("000001-request"),
                  "POST / HTTP/1.1\nHost: h\nAuthorization: (not shown)\n\nask");
        EXPECT_EQ(file("000001-reply"), "HTTP/1.1 200 OK\nExt:\nA: b\n\nanswer");
    }
}

TEST_F(WireTrace, HasEveryPieceOfABodyAsSoonAsItIsMade) {
    const http::Reply traced = reply([](http::Request&&) {
        http::Reply result{200, "OK", {}, "one"};
        result.rest = [next = 0](std::string& out) mutable {
            ++next;
            if (next == 3)
                throw std::runtime_error("no more");
            out += next == 1 ? ", two" : ", three";
            return true;
        };
        return result;
    });
    EXPECT_EQ(file("000001-reply"), "HTTP/1.1 200 OK\n\none");
    std::string out = "before";
    EXPECT_TRUE(traced.rest(out));
    EXPECT_EQ(out, "before, two");
    EXPECT_EQ(file("000001-reply"), "HTTP/1.1 200 OK\n\none, two");
    EXPECT_TRUE(traced.rest(out));
    EXPECT_THROW(traced.rest(out), std::runtime_error);
    EXPECT_EQ(file("000001-reply"), "HTTP/1.1 200 OK\n\none, two, three");
}

} // namespace
} // namespace embedded::cimhost
