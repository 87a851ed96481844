// Runs a program and reads what it says, for a limited time; the signals that ask this one to end.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace registering {

/// From now on SIGINT, SIGTERM and SIGHUP are remembered, and a closed output ends nothing:
/// the program can first undo what it has begun.
void takeSignals();

/// The first signal that came, or 0. Any thread.
int interruptedBy();

/// A variable of the environment; empty if it is not set.
std::string environment(const char* name);

/// A program and its arguments. No shell sees them.
using Arguments = std::vector<std::string>;

/// How a program ended and what it said.
struct Outcome {
    std::string out;
    std::string err;
    int exitCode = -1;      ///< -1 unless it ended by itself
    int signal = 0;         ///< the signal that ended it
    bool timedOut = false;  ///< it was killed because it took too long
    bool tooMuch = false;   ///< it was killed because it printed too much
    std::string notStarted; ///< why it could not be started

    bool ok() const { return exitCode == 0 && !tooMuch; }
};

/// How programs are run: runProgram, or a test's stand-in.
using Run = std::function<Outcome(const Arguments&)>;

/// Runs a program, found by its path, in a process group of its own, with this program's
/// environment (but messages in English) and without input. If it takes longer than the time, or
/// prints more than 16 MiB, it and its children are killed. When this program is interrupted
/// meanwhile, it has a few seconds left to finish. For the one thread that the program has. Throws
/// std::system_error where the system denies it memory.
Outcome runProgram(const Arguments& arguments, std::chrono::seconds timeout);

/// The command as one would type it.
std::string commandText(const Arguments& arguments);

/// How it ended and the first lines of what it said, on one line, for people.
std::string describe(const Outcome& outcome);

} // namespace registering
