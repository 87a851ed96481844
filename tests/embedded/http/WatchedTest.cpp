// Looking on while a handler answers.
#include "http/Message.h"

#include <gtest/gtest.h>

namespace embedded::http {
namespace {

TEST(Watched, SeesRequestAndReplyWhereverTheReplyIsMade) {
    for (const bool byWork : {false, true}) {
        std::string seen;
        const Handler handler = watched(
            [&](Request&& request) -> Answer {
                seen += "handled ";
                const auto make = [body = std::move(request.body)] {
                    return Reply{200, "OK", {}, "reply to " + body};
                };
                return byWork ? Answer(Work(make)) : Answer(make());
            },
            [&](const Request& request) {
                seen += request.body + " ";
                return [&](Reply& reply) {
                    seen += reply.body;
                    reply.status = 201;
                };
            });
        Answer answer = handler(Request{"POST", "/", 11, {}, "question"});
        ASSERT_EQ(std::holds_alternative<Work>(answer), byWork);
        EXPECT_EQ(seen.find("reply to") == std::string::npos, byWork);
        const Reply reply =
            byWork ? std::get<Reply>(std::get<Work>(answer).make()) : std::get<Reply>(answer);
        EXPECT_EQ(seen, "question handled reply to question");
        EXPECT_EQ(reply.status, 201U);
    }
}

} // namespace
} // namespace embedded::http
