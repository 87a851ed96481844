// The init gate: what a request does before, while and after the provider is initialized.
#include "Operations.h"
#include "support/ChildProcess.h"
#include "support/MutexProbe.h"
#include "support/Resolver.h"

#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

#include <unistd.h>

PEGASUS_USING_PEGASUS;
using namespace testsupport;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

const std::string waiting = "Quil - enum Test waiting init is 1";

class InitGateTest : public ModuleTest {
  protected:
    InitGateTest() { resolver = Resolver(); }

    static CIMObjectPath anyProfile() {
        return pathOf("CIM_RegisteredProfile", {{"InstanceID", "Orvex1"}}, "root/other");
    }

    /// What the server's failure traces below initData().
    static Lines failedCatalogueLines() {
        return joined({{"Quil initData(): Start InitInProgress 1"},
                       entryLines("CIM_RegisteredProfile"),
                       entryLines("CIM_RegisteredProfile"),
                       entryLines("CIM_RegisteredSubProfile"),
                       {"_getClassFromCIMOM(): Exception hit ",
                        "_getClassFromCIMOM(): Ecxeption className CIM_RegisteredSubProfile"}});
    }
};

std::string whole(const Lines& lines) {
    std::string all;
    for (const std::string& line : lines)
        all += line + "\n";
    return all;
}

} // namespace

TEST_F(InitGateTest, RequestThatFindsNoCatalogueBuildsIt) {
    for (const std::string& operation : readOperations()) {
        SCOPED_TRACE(operation);
        ServerProfileProvider fresh;
        const Answer answer = ask(fresh, operation, anyProfile());
        const Lines begun =
            traceLines(joined({startLines(operation, "CIM_RegisteredProfile"), gateLines(operation),
                               catalogueLines(), classLines(operation, "CIM_RegisteredProfile")}));
        ASSERT_GE(answer.trace.size(), begun.size());
        EXPECT_EQ(Lines(answer.trace.begin(),
                        answer.trace.begin() + static_cast<std::ptrdiff_t>(begun.size())),
                  begun);
        EXPECT_FALSE(answer.paths.empty());
        EXPECT_EQ(answer.completeCalls, 1U);
        // The next one finds it.
        EXPECT_EQ(occurrences(whole(ask(fresh, operation, anyProfile()).trace), "initData"), 0U);
        EXPECT_EQ(fresh.registeredProfiles().size(), 3U);
        EXPECT_EQ(text(fresh.registeredProfiles()[0].getPath().getNameSpace().getString()),
                  "root/cimv2");
    }
}

TEST_F(InitGateTest, CatalogueIsBuiltEvenForAClassThatIsNotServed) {
    ask(provider, "enumerateInstances", pathOf("CIM_ManagedElement"));
    EXPECT_EQ(provider.registeredProfiles().size(), 3U);
}

TEST_F(InitGateTest, FailureToBuildIsTracedAndSwallowedAndTheNextRequestTriesAgain) {
    server->fail("getClass", "CIM_RegisteredSubProfile", CIM_ERR_FAILED, "not now");
    for (const std::string& operation : readOperations()) {
        SCOPED_TRACE(operation);
        ServerProfileProvider fresh;
        for (const Uint32 left : {2U, 4U}) {
            const Answer answer = ask(fresh, operation, anyProfile());
            EXPECT_EQ(answer.trace,
                      traceLines(joined({startLines(operation, "CIM_RegisteredProfile"),
                                         gateLines(operation),
                                         failedCatalogueLines(),
                                         {"Quil " + operation + "(): Exception - "}})));
            EXPECT_TRUE(answer.paths.empty());
            EXPECT_EQ(answer.completeCalls + answer.processingCalls, 0U);
            EXPECT_EQ(fresh.registeredProfiles().size(), left);
            EXPECT_TRUE(moduleMutexIsFree());
        }
    }
}

TEST_F(InitGateTest, CatalogueIsAppendedToWhatAFailedAttemptLeft) {
    server->fail("getClass", "CIM_RegisteredSubProfile", CIM_ERR_FAILED, "not now");
    ask(provider, "enumerateInstances", anyProfile());
    server->fail("getClass", "CIM_RegisteredSubProfile", nullptr);
    const Answer answer =
        ask(provider, "enumerateInstances", pathOf("CIM_RegisteredProfile", {}, "root/cimv2"));
    const std::string path = "//switch1.example.net/root/cimv2:CIM_RegisteredProfile.InstanceID=";
    EXPECT_EQ(answer.paths, (Lines{path + "\"Orvex1\"", path + "\"Orvex2\"", path + "\"Orvex1\"",
                                   path + "\"Orvex2\"", path + "\"Orvex6\""}));
    EXPECT_EQ(answer.completeCalls, 1U);
    EXPECT_EQ(provider.registeredSubProfiles().size(), 3U);
}

TEST_F(InitGateTest, FailedInitializeReturnsNormallyAndLeavesTheGateClosed) {
    server->fail("getClass", "CIM_RegisteredSubProfile", CIM_ERR_FAILED, "not now");
    EXPECT_EQ(tracedBy([&] { provider.initialize(handle); }),
              traceLines(joined({{"Quil initialize(): Start ",
                                  "Quil initialize(): Start BEFoRE MUTEX _initInProgress 0",
                                  "Quil initialize(): Start AFTER MUTEX _initInProgress 0",
                                  "Quil initialize(): Start _initInProgress 1",
                                  "Quil initialize(): _hostName switch1.example.net",
                                  "Quil initialize(): calling initdata() - initFlag is  0"},
                                 failedCatalogueLines(),
                                 {"Quil initialize(): Exception - ", "Quil initialize(): End "}})));
    EXPECT_EQ(_initInProgress.load(), 1);
    EXPECT_TRUE(moduleMutexIsFree());
}

TEST_F(InitGateTest, FailedInitializeTracesTheMessage) {
    server->fail(
        "getClass", "CIM_RegisteredProfile",
        [] { throw Exception(String("connection timed out")); });
    const Lines lines = tracedBy([&] { provider.initialize(handle); });
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2],
              "ServerProfileProvider Quil initialize(): Exception - connection timed out");
    EXPECT_EQ(lines.back(), "ServerProfileProvider Quil initialize(): End ");
    EXPECT_EQ(_initInProgress.load(), 1);
}

TEST_F(InitGateTest, RequestsAfterAFailedInitializeWaitForEverTracingOnceASecond) {
    server->fail("getClass", "CIM_RegisteredProfile", CIM_ERR_FAILED, "never");
    tracedBy([&] { provider.initialize(handle); });
    const auto begin = std::chrono::steady_clock::now();
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (const std::string& operation : readOperations()) {
        children.push_back(std::make_unique<ChildProcess>([this, operation] {
            PathRecorder paths;
            InstanceRecorder instances;
            ObjectRecorder objects;
            call(provider, operation, anyProfile(), Filters(), paths, instances, objects);
        }));
    }
    for (std::size_t i = 0; i < children.size(); ++i) {
        const std::string operation = readOperations()[i];
        const std::string before = whole(traceLines(
            joined({startLines(operation, "CIM_RegisteredProfile"),
                    {"Quil " + operation + "(): Start BEFoRE MUTEX _initInProgress 1",
                     "Quil " + operation + "(): Start AFTER MUTEX _initInProgress 1"}})));
        const std::string line = whole(traceLines({waiting}));
        const std::string written = children[i]->outputUntil(line, 3, seconds(60));
        EXPECT_EQ(written.substr(0, before.size() + 3 * line.size()), before + line + line + line);
        EXPECT_FALSE(children[i]->hasEnded());
    }
    EXPECT_GE(std::chrono::steady_clock::now() - begin, milliseconds(1900));
}

TEST_F(InitGateTest, RequestThatWaitsHoldsTheMutex) {
    server->fail("getClass", "CIM_RegisteredProfile", CIM_ERR_FAILED, "never");
    tracedBy([&] { provider.initialize(handle); });
    ChildProcess child([this] {
        std::thread first([this] {
            InstanceRecorder handler;
            provider.enumerateInstances(OperationContext(), anyProfile(), false, false,
                                        CIMPropertyList(), handler);
        });
        ::sleep(1);
        PathRecorder handler;
        provider.enumerateInstanceNames(OperationContext(), anyProfile(), handler);
        first.join();
    });
    child.outputUntil("enumerateInstanceNames(): Start BEFoRE MUTEX", 1, seconds(60));
    const std::string& written = child.outputFor(milliseconds(1500));
    EXPECT_EQ(occurrences(written, "enumerateInstances(): Start AFTER MUTEX"), 1U);
    EXPECT_EQ(occurrences(written, "enumerateInstanceNames(): Start BEFoRE MUTEX"), 1U);
    EXPECT_EQ(occurrences(written, "enumerateInstanceNames(): Start AFTER MUTEX"), 0U);
}

TEST_F(InitGateTest, RequestThatWaitsGoesOnWhenTheGateOpens) {
    tracedBy([&] { provider.initialize(handle); });
    _initInProgress = 1;
    PathRecorder handler;
    const Lines lines = tracedBy([&] {
        std::thread request(
            [&] { provider.enumerateInstanceNames(OperationContext(), anyProfile(), handler); });
        std::this_thread::sleep_for(milliseconds(500));
        _initInProgress = 0;
        request.join();
    });
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 5),
              traceLines({"Quil enumerateInstanceNames(): className is CIM_RegisteredProfile",
                          "Quil enumerateInstanceNames(): Start BEFoRE MUTEX _initInProgress 1",
                          "Quil enumerateInstanceNames(): Start AFTER MUTEX _initInProgress 1",
                          waiting, "Quil enumerateInstanceNames(): Start _initInProgress 0"}));
    EXPECT_EQ(handler.delivered.size(), 3U);
    EXPECT_EQ(handler.completeCalls, 1U);
}

TEST_F(InitGateTest, OtherExceptionLeavesInitializeWithTheMutexLocked) {
    server->fail(
        "getClass", "CIM_RegisteredProfile", [] { throw std::runtime_error("of another type"); });
    ChildProcess child([this] {
        try {
            provider.initialize(handle);
        } catch (const std::runtime_error& error) {
            std::cout << "passed: " << error.what() << std::endl;
        }
        std::thread([this] {
            PathRecorder handler;
            provider.enumerateInstanceNames(OperationContext(), anyProfile(), handler);
        }).join();
    });
    child.outputUntil("enumerateInstanceNames(): Start BEFoRE MUTEX", 1, seconds(60));
    const std::string& written = child.outputFor(milliseconds(1500));
    EXPECT_EQ(occurrences(written, "passed: of another type\n"), 1U);
    EXPECT_EQ(occurrences(written, "Quil initialize(): Exception"), 0U);
    EXPECT_EQ(occurrences(written, "Quil initialize(): End"), 0U);
    EXPECT_EQ(occurrences(written, "enumerateInstanceNames(): Start BEFoRE MUTEX"), 1U);
    EXPECT_EQ(occurrences(written, "enumerateInstanceNames(): Start AFTER MUTEX"), 0U);
    EXPECT_FALSE(child.hasEnded());
}
