// The trace on standard output: its form, its independence of the stream, its lines in one piece.
#include "common/Trace.h"
#include "Operations.h"
#include "support/ChildProcess.h"

#include <algorithm>
#include <iomanip>
#include <thread>

#include <unistd.h>

PEGASUS_USING_PEGASUS;
using namespace testsupport;
using serverprofile::trace;

namespace {

class TraceTest : public ModuleTest {};

} // namespace

TEST_F(TraceTest, LineIsThePrefixTheMessageAndTheValues) {
    EXPECT_EQ(
        tracedBy([] {
            trace("message ");
            trace("");
            trace("flags ", true, false);
            trace("numbers ", Sint32(-1), Uint32(4294967295U), Sint32(0));
            trace("names ", CIMName("CIM_X"), " ", String("text"), CIMName());
            trace("none ", static_cast<const char*>(nullptr));
        }),
        (Lines{"ServerProfileProvider message ", "ServerProfileProvider ",
               "ServerProfileProvider flags 10", "ServerProfileProvider numbers -142949672950",
               "ServerProfileProvider names CIM_X text", "ServerProfileProvider none "}));
}

TEST_F(TraceTest, TextsAreUtf8) {
    EXPECT_EQ(tracedBy([] { trace("key is ", String("Z\xC3\xBCrich")); }),
              (Lines{"ServerProfileProvider key is Z\xC3\xBCrich"}));
}

TEST_F(TraceTest, LongLineIsAsWholeAsAShortOne) {
    for (const std::size_t length : {200U, 232U, 233U, 234U, 235U, 512U, 4000U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(tracedBy([&] { trace(text.c_str(), String("y"), Sint32(-1)); }),
                  (Lines{"ServerProfileProvider " + text + "y-1"}))
            << length;
    }
}

TEST_F(TraceTest, SettingsOfTheStreamAreNeitherUsedNorChanged) {
    provider.initialize(handle);
    const CIMObjectPath path = pathOf("CIM_RegisteredProfile", {{"InstanceID", "Orvex6"}});
    const Lines plain = ask(provider, "getInstance", path).trace;

    std::ios original(nullptr);
    original.copyfmt(std::cout);
    std::cout << std::boolalpha << std::hex << std::showbase << std::left << std::setfill('*');
    std::cout.width(40);
    const std::ios_base::fmtflags flags = std::cout.flags();
    const Lines traced = ask(provider, "getInstance", path).trace;
    const std::streamsize width = std::cout.width();
    const char fill = std::cout.fill();
    const std::ios_base::fmtflags after = std::cout.flags();
    std::cout.copyfmt(original);

    EXPECT_EQ(traced, plain);
    EXPECT_EQ(after, flags);
    EXPECT_EQ(width, 40);
    EXPECT_EQ(fill, '*');
}

TEST_F(TraceTest, LineIsFlushedAtItsEnd) {
    // A process that ends without flushing loses what it has kept back.
    ChildProcess child([this] {
        trace("traced");
        provider._checkKey("CIM_ManagedElement", "Name");
        ::_exit(0);
    });
    EXPECT_EQ(child.outputFor(std::chrono::seconds(20)),
              "ServerProfileProvider traced\n"
              "ServerProfileProvider: checking key name CIM_ManagedElement -- Name \n"
              "\tServerprofileProvider: FAIL check key name CIM_ManagedElement -- Name \n");
}

TEST_F(TraceTest, LinesOfTwoThreadsNeverMix) {
    constexpr unsigned threads = 8;
    constexpr unsigned lines = 300;
    const auto message = [](unsigned thread) {
        return std::string(40, static_cast<char>('a' + thread));
    };
    for (const bool detached : {false, true}) {
        SCOPED_TRACE(detached ? "streams of their own" : "streams on stdio");
        ChildProcess child([&] {
            if (detached)
                std::ios::sync_with_stdio(false);
            std::vector<std::thread> running;
            for (unsigned i = 0; i < threads; ++i)
                running.emplace_back([&, i] {
                    for (unsigned line = 0; line < lines; ++line) {
                        trace(message(i).c_str(), String("+"), line, true);
                        provider._checkKey("CIM_HostedService", message(i).c_str());
                    }
                });
            for (std::thread& thread : running)
                thread.join();
        });
        std::istringstream written(child.outputFor(std::chrono::seconds(60)));
        ASSERT_TRUE(child.hasEnded());
        Lines actual;
        for (std::string line; std::getline(written, line);)
            actual.push_back(line);
        Lines expected;
        for (unsigned i = 0; i < threads; ++i) {
            for (unsigned line = 0; line < lines; ++line) {
                expected.push_back(message(i) + "+" + std::to_string(line) + "1");
                expected.push_back(keyLine("CIM_HostedService", message(i)));
            }
        }
        expected = traceLines(expected);
        std::sort(actual.begin(), actual.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_TRUE(actual == expected) << actual.size() << " lines of " << expected.size();
    }
}
