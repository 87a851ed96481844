#include "register/Process.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace registering {
namespace {

using std::chrono::seconds;

Outcome shell(const char* script, seconds timeout = seconds(60)) {
    return runProgram({"/bin/sh", "-c", script}, timeout);
}

TEST(Process, BothOutputsAndTheExitCodeAreRead) {
    const Outcome outcome = shell("echo out; echo err >&2; exit 7");
    EXPECT_EQ(outcome.out, "out\n");
    EXPECT_EQ(outcome.err, "err\n");
    EXPECT_EQ(outcome.exitCode, 7);
    EXPECT_EQ(describe(outcome), "ended with 7, saying: err | out");
}

TEST(Process, MuchOutputIsReadToTheEnd) {
    EXPECT_EQ(shell("head -c 3000000 /dev/zero").out.size(), 3000000U);
}

TEST(Process, OneThatPrintsWithoutEndIsKilled) {
    const Outcome outcome = shell("cat /dev/zero & exec cat /dev/zero");
    EXPECT_TRUE(outcome.tooMuch);
    EXPECT_FALSE(outcome.ok());
    EXPECT_LT(outcome.out.size(), 17U * 1024 * 1024);
    EXPECT_EQ(describe(outcome).substr(0, 31), "printed too much and was killed");
}

TEST(Process, ThoseThatPrintAtOnceLoseNothing) {
    const Outcome outcome = shell("for i in 1 2 3 4; do head -c 2000000 /dev/zero & done; wait");
    EXPECT_EQ(outcome.out.size(), 8'000'000U);
}

TEST(Process, OneThatHangsIsKilledWithItsChildren) {
    std::array<int, 2> held{}; // by each of them, while it runs
    ASSERT_EQ(pipe(held.data()), 0);
    const Outcome outcome = shell("sleep 100 & sleep 100; echo never", seconds(1));
    close(held[1]);
    pollfd ended{held[0], POLLIN, 0};
    EXPECT_EQ(poll(&ended, 1, 20'000), 1);
    close(held[0]);
    EXPECT_TRUE(outcome.timedOut);
    EXPECT_FALSE(outcome.ok());
    EXPECT_EQ(describe(outcome), "did not end in time and was killed");
}

TEST(Process, OneThatLeavesADaemonBehindIsNotWaitedForBeyondItsEnd) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(shell("echo started; sleep 30 &").ok());
    EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(25));
}

TEST(Process, ACrashIsToldFromAnEnd) {
    const Outcome outcome = shell("kill -SEGV $$");
    EXPECT_EQ(outcome.signal, 11);
    EXPECT_FALSE(outcome.ok());
}

TEST(Process, ItsEndIsToldThoughWhoStartedThisOneIgnoresThatOfChildren) {
    std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(shell("exit 7").exitCode, 7);
}

TEST(Process, WhatIsNotThereIsSaid) {
    EXPECT_EQ(describe(runProgram({"/nowhere/at/all"}, seconds(5))),
              "could not be started: No such file or directory");
}

TEST(Process, ArgumentsReachTheProgramUntouchedAndItSpeaksEnglish) {
    const Outcome outcome =
        runProgram({"/bin/sh", "-c", "echo \"$1\"; echo $LC_ALL", "sh", "a $b 'c' *"}, seconds(60));
    EXPECT_EQ(outcome.out, "a $b 'c' *\nC\n");
}

TEST(Process, CommandsReadAsOneWouldTypeThem) {
    EXPECT_EQ(commandText({"/usr/bin/cimcli", "ni", "a b", "it's", ""}),
              "/usr/bin/cimcli ni 'a b' 'it'\\''s' ''");
}

} // namespace
} // namespace registering
