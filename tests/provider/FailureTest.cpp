// Exceptions below a read operation: which it swallows, which it passes on, and what stays.
#include "Operations.h"
#include "support/MutexProbe.h"
#include "support/Resolver.h"

#include <functional>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <utility>

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

/// Takes the place of standard output's buffer, and tells of each line when it is flushed.
class LineWatch : public std::stringbuf {
  public:
    explicit LineWatch(std::function<void(const std::string&)> onLine)
        : _onLine(std::move(onLine)) {}

  private:
    int sync() override {
        const std::string line = str();
        str("");
        _onLine(line);
        return 0;
    }
    std::function<void(const std::string&)> _onLine;
};

class FailureTest : public ModuleTest {
  protected:
    FailureTest() {
        resolver = Resolver();
        tracedBy([&] { provider.initialize(handle); });
    }

    /// Calls `operation` with handlers that call these functions.
    Lines callWith(const std::string& operation, const std::function<void(std::size_t)>& onDeliver,
                   const std::function<void()>& onComplete) {
        paths = PathRecorder();
        instances = InstanceRecorder();
        objects = ObjectRecorder();
        paths.onDeliver = instances.onDeliver = objects.onDeliver = onDeliver;
        paths.onComplete = instances.onComplete = objects.onComplete = onComplete;
        return tracedBy([&] {
            call(provider, operation,
                 pathOf("CIM_RegisteredSubProfile", {{"InstanceID", "Orvex3"}}), Filters(), paths,
                 instances, objects);
        });
    }
    std::size_t delivered() const {
        return paths.delivered.size() + instances.delivered.size() + objects.delivered.size();
    }
    unsigned completed() const {
        return paths.completeCalls + instances.completeCalls + objects.completeCalls;
    }
    /// Asks for the mutex while `work` writes the line of an exception, which it must do once.
    static void expectFreeMutexAtTheTraceOfTheException(const std::function<void()>& work) {
        unsigned lines = 0;
        LineWatch watch([&](const std::string& line) {
            if (line.find("(): Exception - ") != std::string::npos) {
                ++lines;
                EXPECT_TRUE(moduleMutexIsFree(std::chrono::seconds(1)));
            }
        });
        std::streambuf* const original = std::cout.rdbuf(&watch);
        work();
        std::cout.rdbuf(original);
        EXPECT_EQ(lines, 1U);
    }
    /// Getting an instance delivers one, the others at least two.
    static std::size_t firstFailing(const std::string& operation) {
        return operation == "getInstance" ? 0 : 1;
    }

    PathRecorder paths;
    InstanceRecorder instances;
    ObjectRecorder objects;
};

} // namespace

TEST_F(FailureTest, PegasusExceptionOfADeliveryIsTracedAndSwallowed) {
    for (const std::string& operation : readOperations()) {
        SCOPED_TRACE(operation);
        const std::size_t failing = firstFailing(operation);
        const Lines trace = callWith(
            operation,
            [&](std::size_t before) {
                if (before == failing)
                    throw CIMException(CIM_ERR_FAILED, String("no more room"));
            },
            nullptr);
        EXPECT_EQ(trace.back(),
                  "ServerProfileProvider Quil " + operation + "(): Exception - no more room");
        EXPECT_EQ(delivered(), failing); // what was delivered stays delivered
        EXPECT_EQ(completed(), 0U);
        EXPECT_TRUE(moduleMutexIsFree());
    }
}

TEST_F(FailureTest, PegasusExceptionOfCompletionIsTracedAndSwallowed) {
    for (const std::string& operation : readOperations()) {
        SCOPED_TRACE(operation);
        const Lines trace = callWith(operation, nullptr, [] {
            throw CIMException(CIM_ERR_FAILED, String("Too few objects delivered."));
        });
        EXPECT_EQ(trace.back(), "ServerProfileProvider Quil " + operation +
                                    "(): Exception - Too few objects delivered.");
        EXPECT_EQ(completed(), 1U);
        EXPECT_TRUE(moduleMutexIsFree());
    }
}

TEST_F(FailureTest, ExceptionsOfOtherTypesPassAndReleaseTheMutex) {
    for (const std::string& operation : readOperations()) {
        SCOPED_TRACE(operation);
        const std::size_t failing = firstFailing(operation);
        EXPECT_THROW(callWith(
                         operation,
                         [&](std::size_t before) {
                             if (before == failing)
                                 throw std::runtime_error("of another type");
                         },
                         nullptr),
                     std::runtime_error);
        EXPECT_EQ(delivered(), failing);
        EXPECT_EQ(completed(), 0U);
        EXPECT_TRUE(moduleMutexIsFree());
        EXPECT_THROW(callWith(operation, nullptr, [] { throw 1; }), int);
        EXPECT_TRUE(moduleMutexIsFree());
    }
}

TEST_F(FailureTest, NextRequestIsServedAsIfNothingHadHappened) {
    const auto fail = [](std::size_t) { throw Exception(String("once")); };
    const auto failOtherwise = [](std::size_t) { throw std::runtime_error("once"); };
    callWith("enumerateInstances", fail, nullptr);
    EXPECT_THROW(callWith("enumerateInstances", failOtherwise, nullptr), std::runtime_error);
    const Answer answer = ask(provider, "enumerateInstances", pathOf("CIM_RegisteredProfile"));
    EXPECT_EQ(answer.paths.size(), 3U);
    EXPECT_EQ(answer.completeCalls, 1U);
}

TEST_F(FailureTest, ClassThatTheServerDoesNotKnowEndsTheRequestWithoutAnError) {
    server->forget("ORVEX_SoftwareIdentity");
    const Answer answer = ask(provider, "enumerateInstances", pathOf("ORVEX_SoftwareIdentity"));
    EXPECT_EQ(
        answer.trace,
        traceLines(joined({frameLines("enumerateInstances", "ORVEX_SoftwareIdentity"),
                           {"Quil orvexSIInstances() Start",
                            "_getClassFromCIMOM(): className ORVEX_SoftwareIdentity",
                            "_getClassFromCIMOM(): Exception hit ",
                            "_getClassFromCIMOM(): Ecxeption className ORVEX_SoftwareIdentity",
                            "Quil enumerateInstances(): Exception - "}})));
    EXPECT_EQ(answer.completeCalls, 0U);
}

TEST_F(FailureTest, ReferenceThatIsNoPathEndsTheRequestWithoutAnError) {
    for (const auto& [className, key] :
         Keys{{"CIM_SubProfileRequiresProfile", "Antecedent"},
              {"CIM_ElementConformsToProfile", "ConformantStandard"}}) {
        const Answer answer =
            ask(provider, "getInstance", pathOf(className, {{key, "no path at all"}}));
        EXPECT_EQ(answer.trace.back().find("ServerProfileProvider Quil getInstance(): Exception - "
                                           "malformed object name"),
                  0U)
            << answer.trace.back();
        EXPECT_TRUE(answer.objects.empty());
        EXPECT_EQ(answer.completeCalls, 0U);
        EXPECT_TRUE(moduleMutexIsFree());
    }
}

TEST_F(FailureTest, ReferenceThatIsNoPathIsAnEmptyEndAroundTheManager) {
    for (const char* className :
         {"CIM_HostedService", "CIM_HostedAccessPoint", "CIM_NamespaceInManager",
          "CIM_CommMechanismForManager", "ORVEX_ElementSoftwareIdentity"}) {
        const Answer answer =
            ask(provider, "getInstance", pathOf(className, {{"Antecedent", "no path at all"}}));
        EXPECT_EQ(answer.objects.size(), 1U) << className;
        EXPECT_EQ(answer.completeCalls, 1U) << className;
    }
}

TEST_F(FailureTest, SwallowedExceptionIsTracedAfterTheMutexIsReleased) {
    const auto refuse = [](std::size_t) { throw Exception(String("refused")); };
    for (const std::string& operation : readOperations()) {
        SCOPED_TRACE(operation);
        expectFreeMutexAtTheTraceOfTheException([&] { callWith(operation, refuse, nullptr); });
    }
    SCOPED_TRACE("initialize");
    server->fail("getClass", "CIM_RegisteredProfile", CIM_ERR_FAILED);
    expectFreeMutexAtTheTraceOfTheException([&] { provider.initialize(handle); });
}

TEST_F(FailureTest, ReadBackThatFailsOtherwiseThanByPegasusPasses) {
    server->fail("enumerateInstanceNames", "CIM_ObjectManager",
                 [] { throw std::runtime_error("of another type"); });
    EXPECT_THROW(ask(provider, "enumerateInstanceNames", pathOf("CIM_NamespaceInManager")),
                 std::runtime_error);
    EXPECT_TRUE(moduleMutexIsFree());
}
