// Pulled enumerations: whose they are, how many there may be, and when they are gone.
#include "routing/Enumerations.h"

#include <Pegasus/Common/Exception.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace embedded::routing {
namespace {

using namespace std::chrono_literals;

constexpr auto timeOut = 30s;

Operation instancesOf(const char* user, const char* nameSpace = "root/a") {
    Operation operation;
    operation.kind = OperationKind::EnumerateInstances;
    operation.caller.userName = user;
    operation.nameSpace = Pegasus::CIMNamespaceName(nameSpace);
    return operation;
}

/// Counts from 1 to `count`, and tells how many cursors like it there are.
Cursor counting(Pegasus::Uint32 count, const std::shared_ptr<int>& alive = nullptr) {
    return [count, alive, at = Pegasus::Uint32(0)](Answered& answered) mutable {
        if (at == count)
            return false;
        answered = Pegasus::CIMValue(++at);
        return true;
    };
}

Pegasus::Uint32 nextOf(EnumerationLease& lease) {
    Answered answered;
    Pegasus::Uint32 number = 0;
    if (lease->next(answered))
        std::get<Pegasus::CIMValue>(answered).get(number);
    return number;
}

template <class Function>
int statusOf(const Function& function) {
    try {
        function();
        return 0;
    } catch (const Pegasus::CIMException& error) {
        return error.getCode();
    }
}

class Enumerated : public testing::Test {
  protected:
    std::atomic<Enumerations::Clock::time_point> now{Enumerations::Clock::now()};
    Enumerations::Bounds bounds{4, 3, 100};
    Enumerations all{bounds, [this] { return now.load(); }};

    /// The context of one that has `count` things and waits for the next request.
    std::string opened(const Operation& operation, Pegasus::Uint32 count = 3,
                       const std::shared_ptr<int>& alive = nullptr) {
        EnumerationLease lease = all.open(operation, timeOut);
        lease->setAnswer(counting(count, alive));
        lease.giveBack();
        return lease.context();
    }
    int takeStatus(const std::string& context, const Operation& request) {
        return statusOf([&] { all.take(context, request).giveBack(); });
    }
};

TEST_F(Enumerated, IsReadOnWhereItWasLeft) {
    const std::string context = opened(instancesOf("a"));
    {
        EnumerationLease lease = all.take(context, instancesOf("a"));
        EXPECT_EQ(nextOf(lease), 1U);
        EXPECT_TRUE(lease->hasMore());
        lease.giveBack();
    }
    EnumerationLease lease = all.take(context, instancesOf("a"));
    EXPECT_EQ(nextOf(lease), 2U);
    EXPECT_EQ(nextOf(lease), 3U);
    EXPECT_FALSE(lease->hasMore());
    EXPECT_EQ(nextOf(lease), 0U);
}

TEST_F(Enumerated, ContextsAreLongAndNeverTheSame) {
    const std::string one = opened(instancesOf("a"));
    const std::string other = opened(instancesOf("a"));
    EXPECT_EQ(one.size(), 32U);
    EXPECT_NE(one, other);
    EXPECT_NE(one.substr(0, 8), other.substr(0, 8)); // no counter
}

TEST_F(Enumerated, IsClosedUnlessItIsGivenBack) {
    const auto alive = std::make_shared<int>();
    const std::string context = opened(instancesOf("a"), 3, alive);
    EXPECT_EQ(alive.use_count(), 2);
    { const EnumerationLease lease = all.take(context, instancesOf("a")); }
    EXPECT_EQ(alive.use_count(), 1);
    EXPECT_EQ(all.size(), 0U);
    EXPECT_EQ(takeStatus(context, instancesOf("a")), 21);
}

TEST_F(Enumerated, IsUnknownToOtherUsersAndInOtherNamespaces) {
    const std::string context = opened(instancesOf("a"));
    for (const Operation& other : {instancesOf("b"), instancesOf(""), instancesOf("a", "root/b")}) {
        EXPECT_EQ(takeStatus(context, other), 21);
        EXPECT_EQ(statusOf([&] { all.close(context, other); }), 21);
    }
    EXPECT_EQ(takeStatus("", instancesOf("a")), 21);
    EXPECT_EQ(takeStatus(context + "0", instancesOf("a")), 21);
    EXPECT_EQ(takeStatus(context, instancesOf("a", "ROOT/A")), 0); // names have no case
}

TEST_F(Enumerated, IsReadByOneRequestAtATime) {
    const std::string context = opened(instancesOf("a"));
    EnumerationLease lease = all.take(context, instancesOf("a"));
    EXPECT_EQ(takeStatus(context, instancesOf("a")), 1);
    EXPECT_EQ(statusOf([&] { all.close(context, instancesOf("a")); }), 24);
    now = now.load() + 10 * timeOut; // nor does it expire meanwhile
    EXPECT_EQ(takeStatus(context, instancesOf("a")), 1);
    EXPECT_EQ(nextOf(lease), 1U);
    lease.giveBack();
    EXPECT_EQ(takeStatus(context, instancesOf("a")), 0);
}

TEST_F(Enumerated, ExpiresAfterItsTimeOutAndEachRequestBeginsItAnew) {
    const std::string context = opened(instancesOf("a"));
    now = now.load() + timeOut - 1s;
    EXPECT_EQ(takeStatus(context, instancesOf("a")), 0);
    now = now.load() + timeOut - 1s;
    EXPECT_EQ(takeStatus(context, instancesOf("a")), 0);
    now = now.load() + timeOut;
    EXPECT_EQ(takeStatus(context, instancesOf("a")), 21);
}

TEST_F(Enumerated, LetsGoOfWhatItHeldWhenItHasExpired) {
    const auto alive = std::make_shared<int>();
    opened(instancesOf("a"), 3, alive);
    now = now.load() + timeOut;
    // The test has a time-out of its own.
    while (alive.use_count() != 1 || all.size() != 0)
        std::this_thread::sleep_for(10ms);
}

TEST_F(Enumerated, HasBoundsForOneUserAndForAll) {
    const auto openStatus = [&](const char* user) {
        return statusOf([&] { opened(instancesOf(user)); });
    };
    const std::string first = opened(instancesOf("a"));
    EXPECT_EQ(openStatus("a"), 0);
    EXPECT_EQ(openStatus("a"), 0);
    EXPECT_EQ(openStatus("a"), 27);
    EXPECT_EQ(openStatus("b"), 0);
    EXPECT_EQ(openStatus("b"), 27);
    all.close(first, instancesOf("a"));
    EXPECT_EQ(openStatus("b"), 0);
}

TEST_F(Enumerated, CountsWhatProvidersHaveDelivered) {
    EnumerationLease one = all.open(instancesOf("a"), timeOut);
    one.charge(60);
    {
        EnumerationLease other = all.open(instancesOf("b"), timeOut);
        EXPECT_EQ(statusOf([&] { other.charge(41); }), 27);
        EXPECT_EQ(all.size(), 2U);
    }
    {
        EnumerationLease other = all.open(instancesOf("b"), timeOut);
        other.charge(40);
    }
    one = {};
    EnumerationLease another = all.open(instancesOf("b"), timeOut);
    EXPECT_EQ(statusOf([&] { another.charge(101); }), 27);
    another.charge(100);
}

TEST_F(Enumerated, MayBeAskedForOnSeveralThreads) {
    std::vector<std::thread> threads;
    for (const char* user : {"a", "b", "c", "d"}) {
        threads.emplace_back([this, user] {
            for (int i = 0; i < 500; ++i) {
                const std::string context = opened(instancesOf(user), 2);
                EXPECT_EQ(takeStatus(context, instancesOf(user)), 0);
                all.close(context, instancesOf(user));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(all.size(), 0U);
}

} // namespace
} // namespace embedded::routing
