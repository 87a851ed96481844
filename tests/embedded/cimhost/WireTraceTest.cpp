// What of requests and replies gets into the files of the wire trace.
#include "cimhost/WireTrace.h"

#include "TempDirectory.h"

#include <stdexcept>

namespace embedded::cimhost {
namespace {

class WireTrace : public test::TempDirectory {
  protected:
    http::Reply reply(const http::Handler& handler) {
        const http::Handler tracing =
            traced(handler, path().string(), [](const std::string& line) { FAIL() << line; });
        http::Answer answer = tracing(http::Request{"POST", "/", 11, fields, "ask"});
        if (const http::Work* work = std::get_if<http::Work>(&answer))
            return std::get<http::Reply>(work->make());
        return std::get<http::Reply>(std::move(answer));
    }

    http::Fields fields{{"Host", "h"}, {"Authorization", "Basic x"}};
};

TEST_F(WireTrace, ShowsFieldsThatAreKnownToTellNoSecret) {
    fields = {{"12-CIMMethod", "GetInstance"},
              {"CIMOBJECT", "root"},
              {"User-Agent", "a"},
              {"Proxy-Authorization", "x"},
              {"Cookie", "x"},
              {"12-Authorization", "x"},
              {"1-Host", "x"},
              {"X-Whatever", "x"}};
    reply([](http::Request&&) { return http::Reply(); });
    EXPECT_EQ(file("000001-request"),
              "POST / HTTP/1.1\n12-CIMMethod: GetInstance\nCIMOBJECT: root\nUser-Agent: a\n"
              "Proxy-Authorization: (not shown)\nCookie: (not shown)\n"
              "12-Authorization: (not shown)\n1-Host: (not shown)\nX-Whatever: (not shown)\n\nask");
}

TEST_F(WireTrace, IsForItsOwnerOnlyAndFollowsNoLinks) {
    put("target", "kept");
    const auto linked = [this](http::Request&&) {
        std::filesystem::create_symlink(path("target"), path("000001-reply"));
        return http::Reply();
    };
    const http::Handler tracing = traced(linked, path().string(), [](const std::string& line) {
        EXPECT_NE(line.find("000001-reply"), std::string::npos) << line;
    });
    tracing(http::Request{"POST", "/", 11, fields, "ask"});
    EXPECT_EQ(file("target"), "kept");
    EXPECT_EQ(std::filesystem::status(path("000001-request")).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
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
