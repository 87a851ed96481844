// Who is let in, how long that is remembered, and who is slowed.
#include "users/Accounts.h"

#include "limits/Limits.h"
#include "users/Password.h"

#include <gtest/gtest.h>

namespace embedded::users {
namespace {

using std::chrono::seconds;

// Quick ones: of "reads" and "writes", with the least cost of bcrypt.
const char* const readsHash = "$2b$04$abcdefghijklmnopqrstuu3iKrsgqLrMSBZHdbBGmqSiewL/SxzQy";
const char* const writesHash = "$2b$04$abcdefghijklmnopqrstuu6FetbLa9HUJ0BGnibWGb1zvJKlUiMXa";

class AccountsTest : public testing::Test {
  protected:
    static std::vector<User> users() {
        return {{"anna", Role::Read, readsHash},
                {"bert", Role::Write, writesHash},
                {"cert", Role::Write, noPassword}};
    }

    Outcome recall(const std::string& name, const std::string& password,
                   const std::string& address = "10.0.0.1") {
        return accounts.recall({name, password}, address).outcome;
    }
    Outcome verify(const std::string& name, const std::string& password,
                   const std::string& address = "10.0.0.1") {
        return accounts.verify({name, password}, address).outcome;
    }
    /// Fails until it counts, from an address that is used for nothing else.
    void attack(const std::string& name, const std::string& address) {
        for (unsigned i = 0; i < limits::freeFailures; ++i)
            verify(name, "wrong", address);
    }

    Accounts::Clock::time_point now{std::chrono::hours(1)};
    Accounts accounts{users(), [this] { return now; }};
};

TEST_F(AccountsTest, LetInWhoGivesTheirPasswordAndNobodyElse) {
    EXPECT_EQ(recall("anna", "reads"), Outcome::Unverified);
    const Verdict verdict = accounts.verify({"anna", "reads"}, "10.0.0.1");
    EXPECT_EQ(verdict.outcome, Outcome::Verified);
    EXPECT_EQ(verdict.role, Role::Read);
    EXPECT_EQ(accounts.verify({"bert", "writes"}, "10.0.0.1").role, Role::Write);
    EXPECT_EQ(verify("anna", "writes", "10.0.0.2"), Outcome::WrongPassword);
    EXPECT_EQ(verify("anna", "", "10.0.0.3"), Outcome::WrongPassword);
    EXPECT_EQ(verify("Anna", "reads", "10.0.0.4"), Outcome::UnknownUser);
    EXPECT_EQ(verify("cert", "*", "10.0.0.5"), Outcome::WrongPassword);
}

// The hashes that unknown users are measured by are those of known ones.
TEST_F(AccountsTest, TakeNoPasswordOfAnotherUser) {
    for (int i = 0; i < 20; ++i) {
        const std::string name = "nobody" + std::to_string(i);
        for (const char* const password : {"reads", "writes"})
            EXPECT_EQ(verify(name, password, "10.1.1." + std::to_string(i)), Outcome::UnknownUser);
    }
    EXPECT_EQ(verify("cert", "reads", "10.2.0.1"), Outcome::WrongPassword);
    EXPECT_EQ(verify("cert", "writes", "10.2.0.2"), Outcome::WrongPassword);
}

TEST_F(AccountsTest, KnowWhoseCertificateItIs) {
    EXPECT_EQ(accounts.roleOf("cert"), Role::Write);
    EXPECT_EQ(accounts.roleOf("anna"), Role::Read);
    EXPECT_EQ(accounts.roleOf("dora"), std::nullopt);
}

TEST_F(AccountsTest, RememberWhoComesBackInTime) {
    verify("anna", "reads");
    const Verdict remembered = accounts.recall({"anna", "reads"}, "10.0.0.9");
    EXPECT_EQ(remembered.outcome, Outcome::Remembered);
    EXPECT_EQ(remembered.role, Role::Read);
    EXPECT_EQ(recall("anna", "writes"), Outcome::Unverified);
    EXPECT_EQ(recall("bert", "reads"), Outcome::Unverified);
    EXPECT_EQ(verify("anna", "reads"), Outcome::Remembered) << "no second hash";
    for (int i = 0; i < 3; ++i) {
        now += limits::rememberedTime - seconds(1);
        EXPECT_EQ(recall("anna", "reads"), Outcome::Remembered);
    }
    now += limits::rememberedTime;
    EXPECT_EQ(recall("anna", "reads"), Outcome::Unverified);
}

TEST_F(AccountsTest, RememberThoseWhoWereSeenLast) {
    const auto named = [](std::size_t i) { return "user " + std::to_string(i); };
    std::vector<User> many;
    for (std::size_t i = 0; i <= limits::remembered; ++i)
        many.push_back({named(i), Role::Read, readsHash});
    accounts.replace(many);
    for (std::size_t i = 0; i < limits::remembered; ++i)
        verify(named(i), "reads");
    EXPECT_EQ(recall(named(0), "reads"), Outcome::Remembered);
    verify(named(limits::remembered), "reads");
    EXPECT_EQ(recall(named(0), "reads"), Outcome::Remembered);
    EXPECT_EQ(recall(named(1), "reads"), Outcome::Unverified);
    EXPECT_EQ(recall(named(2), "reads"), Outcome::Remembered);
}

TEST(DigesterTest, TellsNameAndPasswordApartAndHasAKeyOfItsOwn) {
    const Digester digest;
    EXPECT_EQ(digest({"a", "b"}), digest({"a", "b"}));
    EXPECT_NE(digest({"ab", "c"}), digest({"a", "bc"}));
    EXPECT_NE(digest({"a", "b"}), Digester()({"a", "b"}));
}

TEST_F(AccountsTest, ForgetAllWhenTheyAreReplaced) {
    verify("anna", "reads");
    accounts.replace(users());
    EXPECT_EQ(recall("anna", "reads"), Outcome::Unverified);
    EXPECT_EQ(verify("anna", "reads"), Outcome::Verified);
    accounts.replace({{"anna", Role::Write, writesHash}});
    EXPECT_EQ(verify("anna", "reads"), Outcome::WrongPassword);
    EXPECT_EQ(accounts.verify({"anna", "writes"}, "10.0.0.1").role, Role::Write);
    accounts.replace({});
    EXPECT_EQ(verify("anna", "writes"), Outcome::UnknownUser);
    EXPECT_EQ(accounts.roleOf("cert"), std::nullopt);
}

TEST(Accounts, RememberNothingOfUsersThatAreNoMore) {
    const std::vector<User> users{{"anna", Role::Read, readsHash}};
    std::function<void()> meanwhile;
    Accounts accounts(users, [&] {
        if (meanwhile)
            meanwhile();
        return Accounts::Clock::time_point();
    });
    int calls = 0;
    meanwhile = [&] { // the second time, the hash has been looked at
        if (++calls == 2)
            accounts.replace({{"anna", Role::Write, writesHash}});
    };
    EXPECT_EQ(accounts.verify({"anna", "reads"}, "").outcome, Outcome::Verified);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(accounts.recall({"anna", "reads"}, "").outcome, Outcome::Unverified);
    EXPECT_EQ(accounts.verify({"anna", "reads"}, "").outcome, Outcome::WrongPassword);
}

TEST_F(AccountsTest, SlowAUserAfterSomeFailuresMoreAndMore) {
    int address = 0;
    const auto fail = [&] { // from somewhere else each time
        return accounts.verify({"anna", "wrong"}, "10.9.0." + std::to_string(++address));
    };
    for (unsigned i = 0; i < limits::freeFailures; ++i)
        EXPECT_EQ(fail().outcome, Outcome::WrongPassword);
    ASSERT_EQ(limits::slowestAttempts, seconds(8));
    for (const int expected : {1, 2, 4, 8, 8}) {
        const Verdict early = fail();
        EXPECT_EQ(early.outcome, Outcome::TooEarly);
        EXPECT_EQ(early.retryAfter, seconds(expected));
        EXPECT_EQ(recall("anna", "reads"), Outcome::TooEarly) << "even with the right one";
        now += seconds(expected);
        EXPECT_EQ(fail().outcome, Outcome::WrongPassword);
    }
}

TEST_F(AccountsTest, ForgetFailuresAfterAWhile) {
    attack("anna", "10.9.0.1");
    now += limits::failureMemory - seconds(1);
    EXPECT_EQ(verify("anna", "wrong", "10.9.0.2"), Outcome::WrongPassword);
    EXPECT_EQ(verify("anna", "wrong", "10.9.0.3"), Outcome::TooEarly);
    now += limits::failureMemory;
    EXPECT_EQ(verify("anna", "wrong", "10.9.0.4"), Outcome::WrongPassword);
    EXPECT_EQ(verify("anna", "wrong", "10.9.0.5"), Outcome::WrongPassword) << "free again";
}

TEST_F(AccountsTest, SlowAnUnknownUserInTheSameWay) {
    attack("nobody", "10.9.0.1");
    EXPECT_EQ(verify("nobody", "x", "10.9.0.2"), Outcome::TooEarly);
}

TEST_F(AccountsTest, SlowAnAddressWhateverTheUser) {
    for (unsigned i = 0; i < limits::freeFailures; ++i)
        verify("user" + std::to_string(i), "wrong", "2001:db8:1:2::" + std::to_string(i));
    EXPECT_EQ(recall("anna", "reads", "2001:db8:1:2:ffff::1"), Outcome::TooEarly);
    EXPECT_EQ(recall("anna", "reads", "2001:db8:1:3::1"), Outcome::Unverified);
    EXPECT_EQ(recall("anna", "reads", "10.0.0.1"), Outcome::Unverified);
}

TEST_F(AccountsTest, SlowNobodyWhoIsRemembered) {
    EXPECT_EQ(verify("anna", "reads"), Outcome::Verified);
    attack("anna", "10.9.0.1");
    attack("someone", "10.0.0.1");
    EXPECT_EQ(recall("anna", "reads"), Outcome::Remembered);
    EXPECT_EQ(recall("anna", "wrong"), Outcome::TooEarly);
}

TEST_F(AccountsTest, CountNoAttemptThatCameTooEarly) {
    attack("anna", "10.9.0.1");
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(verify("anna", "wrong", "10.9.0.2"), Outcome::TooEarly);
    now += seconds(1);
    EXPECT_EQ(verify("anna", "reads"), Outcome::Verified);
    now += seconds(1);
    EXPECT_EQ(verify("anna", "wrong", "10.9.0.3"), Outcome::WrongPassword);
    EXPECT_EQ(verify("anna", "wrong", "10.9.0.3"), Outcome::WrongPassword)
        << "their own success wipes out the failures of others";
}

TEST(BackoffTest, KeepsSomeAndForgetsWhoHasNotFailedForLongest) {
    Backoff slowing;
    const Backoff::Clock::time_point now{std::chrono::hours(1)};
    for (unsigned i = 0; i < limits::freeFailures; ++i)
        slowing.failed("first", now);
    const auto others = [&](std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            slowing.failed("other " + std::to_string(i), now);
    };
    others(limits::failuresKept - 1);
    EXPECT_EQ(slowing.wait("first", now), seconds(1));
    others(limits::failuresKept);
    EXPECT_EQ(slowing.wait("first", now), seconds(0));
}

TEST(NetworkOf, AnAddressIsItselfAndOfIPv6TheNetwork) {
    EXPECT_EQ(networkOf("10.0.0.1"), "10.0.0.1");
    EXPECT_EQ(networkOf("::ffff:10.0.0.1"), "10.0.0.1");
    EXPECT_EQ(networkOf("2001:db8::1"), networkOf("2001:db8::2:3"));
    EXPECT_NE(networkOf("2001:db8::1"), networkOf("2001:db8:0:1::1"));
    EXPECT_EQ(networkOf(""), "");
}

} // namespace
} // namespace embedded::users
