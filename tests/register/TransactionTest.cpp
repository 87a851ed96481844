#include "register/Transaction.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace registering {
namespace {

// Steps that write down when they run and are taken back.
class Steps : public testing::Test {
  protected:
    const Report report{};
    Transaction transaction{report};
    std::string log;

    void step(const std::string& name, bool works = true, bool goesBack = true) {
        transaction.step(
            "doing " + name,
            [&, name, works] {
                log += name;
                if (!works)
                    throw std::runtime_error("no");
            },
            {"undoing " + name,
             [&, name, goesBack] {
                 log += "-" + name;
                 if (!goesBack)
                     throw std::runtime_error("no way back");
             },
             "by hand"});
    }
};

TEST_F(Steps, AreTakenBackLastFirstTheFailedOneToo) {
    step("a");
    step("b");
    EXPECT_THROW(step("c", false), std::runtime_error);
    EXPECT_TRUE(transaction.rollBack());
    EXPECT_EQ(log, "abc-c-b-a");
    EXPECT_FALSE(transaction.begun());
}

TEST_F(Steps, OneThatCannotBeTakenBackDoesNotKeepTheOthers) {
    step("a");
    step("b", true, false);
    step("c");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(transaction.rollBack());
    EXPECT_EQ(log, "abc-c-b-a");
    EXPECT_NE(
        testing::internal::GetCapturedStderr().find("left undone: undoing b; by hand: by hand"),
        std::string::npos);
}

TEST_F(Steps, OneThatTellsOfTheOthersStaysWhileTheyDo) {
    for (const bool goesBack : {true, false}) {
        log.clear();
        transaction.step("writing down", [] {},
                         {"deleting", [&] { log += "-record"; }, "by hand", "leaving it"});
        step("a", true, goesBack);
        testing::internal::CaptureStderr();
        EXPECT_EQ(transaction.rollBack(), goesBack);
        testing::internal::GetCapturedStderr();
        EXPECT_EQ(log, goesBack ? "a-a-record" : "a-a");
    }
}

} // namespace
} // namespace registering
