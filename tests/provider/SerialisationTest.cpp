// Requests are served one at a time: whoever comes second waits for the first to return.
#include "Operations.h"
#include "support/Resolver.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <future>
#include <thread>

PEGASUS_USING_PEGASUS;
using namespace testsupport;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

/// Somebody stops here, once, until told to go on.
class Stop {
  public:
    void here() {
        if (!_passed) {
            _passed = true;
            _reached.set_value();
            _goOn.get_future().wait();
        }
    }
    bool reached() {
        return _reached.get_future().wait_for(seconds(30)) == std::future_status::ready;
    }
    void goOn() { _goOn.set_value(); }

  private:
    bool _passed = false; ///< used by the one who stops only
    std::promise<void> _reached;
    std::promise<void> _goOn;
};

class SerialisationTest : public ModuleTest {
  protected:
    SerialisationTest() {
        resolver = Resolver();
        server->publish("CIM_ObjectManager", Lines{"root/cimv2:CIM_ObjectManager.Name=\"m\""});
    }

    /// While `first` stands still at `stop`, `second` must not return; afterwards both do.
    void expectSecondWaits(Stop& stop, const std::function<void()>& first,
                           const std::function<void()>& second) {
        tracedBy([&] {
            auto firstDone = std::async(std::launch::async, first);
            EXPECT_TRUE(stop.reached());
            auto secondDone = std::async(std::launch::async, second);
            EXPECT_EQ(secondDone.wait_for(milliseconds(100)), std::future_status::timeout);
            EXPECT_EQ(firstDone.wait_for(seconds(0)), std::future_status::timeout);
            stop.goOn();
            firstDone.get();
            secondDone.get();
        });
    }

    /// A request for `operation`, whose handler calls these functions.
    void request(const std::string& operation, const std::function<void(std::size_t)>& onDeliver,
                 const std::function<void()>& onComplete) {
        PathRecorder paths;
        InstanceRecorder instances;
        ObjectRecorder objects;
        paths.onDeliver = instances.onDeliver = objects.onDeliver = onDeliver;
        paths.onComplete = instances.onComplete = objects.onComplete = onComplete;
        call(provider, operation, pathOf("CIM_RegisteredProfile", {{"InstanceID", "Orvex1"}}),
             Filters(), paths, instances, objects);
        EXPECT_EQ(paths.completeCalls + instances.completeCalls + objects.completeCalls, 1U);
    }
};

} // namespace

TEST_F(SerialisationTest, EveryOperationWaitsForEveryOtherThatDelivers) {
    tracedBy([&] { provider.initialize(handle); });
    for (std::size_t i = 0; i < readOperations().size(); ++i) {
        const std::string first = readOperations()[i];
        const std::string second = readOperations()[(i + 3) % readOperations().size()];
        SCOPED_TRACE(second + " while " + first);
        Stop stop;
        expectSecondWaits(
            stop,
            [&] {
                request(
                    first, [&](std::size_t) { stop.here(); }, nullptr);
            },
            [&] { request(second, nullptr, nullptr); });
    }
}

TEST_F(SerialisationTest, CompletionBelongsToTheRequest) {
    tracedBy([&] { provider.initialize(handle); });
    for (const std::string& first : readOperations()) {
        SCOPED_TRACE(first);
        Stop stop;
        expectSecondWaits(
            stop, [&] { request(first, nullptr, [&] { stop.here(); }); },
            [&] { request("enumerateInstanceNames", nullptr, nullptr); });
    }
}

TEST_F(SerialisationTest, RequestWaitsForOneThatReadsBack) {
    tracedBy([&] { provider.initialize(handle); });
    Stop stop;
    server->fail(
        "enumerateInstanceNames", "CIM_Namespace", [&] { stop.here(); });
    expectSecondWaits(
        stop,
        [&] {
            PathRecorder paths;
            provider.enumerateInstanceNames(OperationContext(), pathOf("CIM_NamespaceInManager"),
                                            paths);
        },
        [&] { request("getInstance", nullptr, nullptr); });
}

TEST_F(SerialisationTest, RequestWaitsForOneThatBuildsTheCatalogueAndFindsIt) {
    Stop stop;
    server->fail(
        "getClass", "CIM_RegisteredSubProfile", [&] { stop.here(); });
    expectSecondWaits(
        stop, [&] { request("enumerateInstanceNames", nullptr, nullptr); },
        [&] { request("references", nullptr, nullptr); });
    EXPECT_EQ(provider.registeredProfiles().size(), 3U);
}

TEST_F(SerialisationTest, RequestWhileInitializeRunsWaitsForTheMutexAndNotInTheLoop) {
    Stop stop;
    server->fail("getClass", "CIM_RegisteredSubProfile", [&] { stop.here(); });
    PathRecorder paths;
    const Lines lines = tracedBy([&] {
        auto initialized = std::async(std::launch::async, [&] { provider.initialize(handle); });
        EXPECT_TRUE(stop.reached());
        auto answered = std::async(std::launch::async, [&] {
            provider.enumerateInstanceNames(OperationContext(), pathOf("CIM_RegisteredProfile"),
                                            paths);
        });
        EXPECT_EQ(answered.wait_for(milliseconds(200)), std::future_status::timeout);
        stop.goOn();
        initialized.get();
        answered.get();
    });
    EXPECT_EQ(paths.delivered.size(), 3U);
    EXPECT_EQ(provider.registeredProfiles().size(), 3U);
    const auto has = [&](const std::string& message) {
        return std::count(lines.begin(), lines.end(), "ServerProfileProvider " + message);
    };
    EXPECT_EQ(has("Quil enumerateInstanceNames(): Start BEFoRE MUTEX _initInProgress 1"), 1);
    EXPECT_EQ(has("Quil enumerateInstanceNames(): Start AFTER MUTEX _initInProgress 0"), 1);
    EXPECT_EQ(has("Quil - enum Test waiting init is 1"), 0);
}

TEST_F(SerialisationTest, ManyRequestsOfManyThreadsAreAllAnswered) {
    tracedBy([&] {
        provider.initialize(handle);
        std::vector<std::thread> threads;
        for (unsigned thread = 0; thread < 8; ++thread)
            threads.emplace_back([this, thread] {
                for (unsigned i = 0; i < 20; ++i)
                    request(readOperations()[(thread + i) % 7], nullptr, nullptr);
            });
        for (std::thread& thread : threads)
            thread.join();
    });
    EXPECT_EQ(provider.registeredProfiles().size(), 3U);
}
