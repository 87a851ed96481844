// What a client may rely on in one connection: framing, order, persistence.
#include "RawClient.h"
#include "RunningServer.h"
#include "http/Message.h"

#include <gtest/gtest.h>

#include <chrono>
#include <locale>
#include <thread>

namespace embedded::http::test {
namespace {

std::string post(const std::string& target, const std::string& body) {
    return "POST " + target +
           " HTTP/1.1\r\nHost: h\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
           body;
}

/// A locale that has no English: it writes every part of a time as "?".
class Foreign : public std::time_put<char> {
  protected:
    iter_type do_put(iter_type out, std::ios_base&, char, const std::tm*, char,
                     char) const override {
        *out++ = '?';
        return out;
    }
};

TEST(HttpDate, IsEnglishAndInGmtWhateverTheLocale) {
    const std::locale before = std::locale::global(std::locale(std::locale(), new Foreign));
    EXPECT_EQ(httpDate(784111777), "Sun, 06 Nov 1994 08:49:37 GMT"); // the standard's example
    EXPECT_EQ(httpDate(1709210096), "Thu, 29 Feb 2024 12:34:56 GMT");
    std::locale::global(before);
}

std::string ok(const std::string& body, const std::string& connection = "") {
    return "HTTP/1.1 200 OK\r\n" + date + "content-length: " + std::to_string(body.size()) +
           "\r\n" + connection + "\r\n" + body;
}

TEST(Server, HandsAnyVerbToTheHandlerAsItCame) {
    RunningServer running;
    RawClient client(running.port());
    for (const std::string verb : {"POST", "M-POST", "GET", "PUT", "frob", "X!"}) {
        client.send(verb + " /echo HTTP/1.1\r\nHost: h\r\n\r\n");
        EXPECT_EQ(client.reply(), ok(verb + " /echo []"));
    }
}

TEST(Server, HandsFieldsOverInOrderAndSpelling) {
    RunningServer running;
    RawClient client(running.port());
    client.send("POST /echo HTTP/1.1\r\nhOST: h\r\n23-CIMOperation:  MethodCall \r\n"
                "Zz: 1\r\nAa:\r\nzZ: 2\r\n\r\n");
    client.reply();
    const Fields fields = running.lastRequest().fields;
    ASSERT_EQ(fields.size(), 5U);
    EXPECT_EQ(fields[0], (Fields::value_type{"hOST", "h"}));
    EXPECT_EQ(fields[1], (Fields::value_type{"23-CIMOperation", "MethodCall"}));
    EXPECT_EQ(*findField(fields, "zz"), "1");
    EXPECT_EQ(*findField(fields, "aa"), "");
    EXPECT_EQ(findField(fields, "a"), nullptr);
}

struct PersistenceCase {
    const char* name;
    const char* version;
    const char* field;
    const char* answered;
    bool staysOpen;
};

class Persistent : public testing::TestWithParam<PersistenceCase> {};

TEST_P(Persistent, FollowsVersionAndConnectionField) {
    const PersistenceCase& rule = GetParam();
    RunningServer running;
    RawClient client(running.port());
    client.send(std::string("POST /echo ") + rule.version + "\r\nHost: h\r\n" + rule.field +
                "Content-Length: 0\r\n\r\n");
    EXPECT_EQ(client.reply(), ok("POST /echo []", rule.answered));
    if (rule.staysOpen) {
        client.send(post("/echo", "b"));
        EXPECT_EQ(client.reply(), ok("POST /echo [b]"));
    } else {
        EXPECT_TRUE(client.closed());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Server, Persistent,
    testing::Values(PersistenceCase{"New", "HTTP/1.1", "", "", true},
                    PersistenceCase{"NewKept", "HTTP/1.1", "Connection: Keep-Alive, TE\r\n", "",
                                    true},
                    PersistenceCase{"NewClosed", "HTTP/1.1", "Connection: close\r\n",
                                    "Connection: close\r\n", false},
                    PersistenceCase{"Old", "HTTP/1.0", "", "Connection: close\r\n", false},
                    PersistenceCase{"OldKept", "HTTP/1.0", "Connection: keep-alive\r\n",
                                    "Connection: keep-alive\r\n", true}),
    [](const auto& rule) { return rule.param.name; });

TEST(Server, AnswersPipelinedRequestsInOrder) {
    RunningServer running;
    RawClient client(running.port());
    client.send(post("/now", "1") + post("/wait", "2") + post("/now", "3") + "\r\n" +
                post("/echo", "4") + post("/now/throw", "") + post("/now", "6"));
    running.awaitWaiting(1);
    running.release();
    EXPECT_EQ(client.reply(), ok("POST /now [1]"));
    EXPECT_EQ(client.reply(), ok("POST /wait [2]"));
    EXPECT_EQ(client.reply(), ok("POST /now [3]"));
    EXPECT_EQ(client.reply(), ok("POST /echo [4]"));
    EXPECT_NE(client.reply().find("500 Internal Server Error"), std::string::npos);
    EXPECT_EQ(client.reply(), ok("POST /now [6]"));
}

TEST(Server, AcceptsChunkedBodies) {
    RunningServer running;
    RawClient client(running.port());
    client.send("POST /echo HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: chunked\r\n\r\n"
                "3\r\nabc\r\n0a;x=y\r\n0123456789\r\n0\r\nTrailer: t\r\n\r\n" +
                post("/echo", "next"));
    EXPECT_EQ(client.reply(), ok("POST /echo [abc0123456789]"));
    EXPECT_EQ(client.reply(), ok("POST /echo [next]"));
}

TEST(Server, SendsNoContinueWhenNoBodyIsToCome) {
    RunningServer running;
    RawClient client(running.port());
    client.send("POST /echo HTTP/1.1\r\nHost: h\r\nExpect: 100-continue\r\n"
                "Content-Length: 0\r\n\r\n");
    EXPECT_EQ(client.reply(), ok("POST /echo []"));
}

TEST(Server, SendsNoContinueToAnOldClient) {
    RunningServer running;
    RawClient client(running.port());
    client.send("POST /echo HTTP/1.0\r\nExpect: 100-continue\r\nContent-Length: 1\r\n\r\nx");
    EXPECT_EQ(client.reply(), ok("POST /echo [x]", "Connection: close\r\n"));
}

TEST(Server, AnswersAHandlersExceptionWith500AndLogsIt) {
    for (const std::string target : {"/throw", "/now/throw"}) {
        RunningServer running;
        RawClient client(running.port());
        client.send(post(target, "") + post("/echo", "after"));
        EXPECT_EQ(client.reply(),
                  "HTTP/1.1 500 Internal Server Error\r\n" + date + "content-length: 0\r\n\r\n");
        EXPECT_EQ(client.reply(), ok("POST /echo [after]"));
        EXPECT_EQ(running.log(), "500 for POST " + target + ": the handler gave up\n");
    }
}

TEST(Server, SendsNoFieldThatHasALineBreak) {
    RunningServer running;
    RawClient client(running.port());
    client.send(post("/split", ""));
    EXPECT_EQ(client.reply(),
              "HTTP/1.1 500 Internal Server Error\r\n" + date + "content-length: 0\r\n\r\n");
    EXPECT_NE(running.log().find("line break"), std::string::npos);
}

// Closed at once, with bytes that have not been read, the connection would be reset, and what is
// still on its way would be lost.
TEST(Server, AReplyBeforeWhatLooksLikeTlsArrivesWhole) {
    const std::string large(500000, 'x');
    RunningServer running(Options(), [&](Request&&) { return Reply{200, "OK", {}, large}; });
    RawClient client(running.port());
    client.send(post("/", "") + "\x16\x03" + std::string(100000, 'y'));
    while (running.log().find("this looks like TLS") == std::string::npos)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_TRUE(client.rest() == ok(large));
}

} // namespace
} // namespace embedded::http::test
