#include "register/Process.h"

#include "register/Interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <system_error>

namespace registering {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds graceAfterInterrupt{5};
// How often a signal or the end of the time is looked for; without output, the end of the program.
constexpr int tick = 100;
constexpr int shortTick = 5;
// Far more than any program has to say that is run here.
constexpr std::size_t mostPrinted = 16UL * 1024 * 1024;

class Pipe {
  public:
    Pipe() {
        if (pipe2(_ends.data(), O_CLOEXEC) != 0)
            throw std::system_error(errno, std::generic_category(), "no pipe");
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        closeReading();
        closeWriting();
    }

    int reading() const { return _ends[0]; }
    int writing() const { return _ends[1]; }
    void closeReading() { close(_ends[0]); }
    void closeWriting() { close(_ends[1]); }

    // Appends what there is; the end is where nobody writes any more.
    void read(std::string& text) {
        std::array<char, 16384> buffer{};
        const ssize_t count = ::read(_ends[0], buffer.data(), buffer.size());
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            closeReading();
    }

  private:
    static void close(int& end) {
        if (end >= 0)
            ::close(end);
        end = -1; // poll passes it over
    }

    std::array<int, 2> _ends{-1, -1};
};

std::vector<std::string> environmentWith(Environment changes) {
    changes.emplace_back("LC_ALL", "C"); // the tools' words are read
    std::vector<std::string> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        bool changed = false;
        for (const auto& [name, value] : changes)
            changed |= text.compare(0, name.size() + 1, name + "=") == 0;
        if (!changed)
            result.push_back(text);
    }
    for (const auto& [name, value] : changes)
        result.push_back(std::string(name).append("=").append(value));
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

// Starts the program; returns an error number or 0.
int spawn(pid_t& child, Arguments arguments, const Environment& environment, const Pipe& out,
          const Pipe& err) {
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, out.writing(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files, err.writing(), STDERR_FILENO);
    // A group of its own: the terminal's Ctrl-C is for this program, and a kill reaches all of it.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    std::vector<std::string> variables = environmentWith(environment);
    const int error = posix_spawn(&child, arguments.front().c_str(), &files, &attributes,
                                  pointers(arguments).data(), pointers(variables).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

// Reads what comes within `patience` milliseconds, once, or, of a program that has ended, all that
// is in the pipes already: a daemon that it left may hold them open.
void readFrom(Pipe& out, Pipe& err, bool ended, int patience, Outcome& outcome) {
    do {
        std::array<pollfd, 2> ready{{{out.reading(), POLLIN, 0}, {err.reading(), POLLIN, 0}}};
        if (poll(ready.data(), ready.size(), ended ? 0 : patience) <= 0)
            return;
        if (ready[0].revents != 0)
            out.read(outcome.out);
        if (ready[1].revents != 0)
            err.read(outcome.err);
        outcome.tooMuch = outcome.out.size() + outcome.err.size() > mostPrinted;
    } while (ended && !outcome.tooMuch);
}

// Reads until the program has ended, or kills it at the end of its time.
void attend(pid_t child, Pipe& out, Pipe& err, Clock::time_point end, Outcome& outcome) {
    const bool alreadyInterrupted = interruptedBy() != 0; // putting things back is not cut short
    bool cut = false;
    int status = 0;
    for (bool ended = false; !ended;) {
        ended = waitpid(child, &status, WNOHANG) == child;
        const bool closed = out.reading() < 0 && err.reading() < 0;
        readFrom(out, err, ended, closed ? shortTick : tick, outcome);
        if (interruptedBy() != 0 && !alreadyInterrupted && !cut) {
            cut = true;
            end = std::min(end, Clock::now() + graceAfterInterrupt);
        }
        outcome.timedOut |= !ended && !outcome.tooMuch && Clock::now() >= end;
        if (!ended && (outcome.tooMuch || outcome.timedOut))
            kill(-child, SIGKILL);
    }
    if (WIFEXITED(status))
        outcome.exitCode = WEXITSTATUS(status);
    else
        outcome.signal = WTERMSIG(status);
}

} // namespace

Outcome runProgram(const Arguments& arguments, std::chrono::seconds timeout,
                   const Environment& environment) {
    Outcome outcome;
    Pipe out;
    Pipe err;
    pid_t child = 0;
    const Clock::time_point end = Clock::now() + timeout;
    if (const int error = spawn(child, arguments, environment, out, err)) {
        outcome.notStarted = std::strerror(error);
        return outcome;
    }
    out.closeWriting();
    err.closeWriting();
    attend(child, out, err, end, outcome);
    return outcome;
}

std::string commandText(const Arguments& arguments) {
    std::string text;
    for (const std::string& argument : arguments) {
        const bool plain = !argument.empty() &&
                           argument.find_first_not_of(
                               "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                               "_-./:=,") == std::string::npos;
        std::string word;
        for (const char c : argument)
            word += c == '\'' ? std::string("'\\''") : std::string(1, c);
        text += (text.empty() ? "" : " ") + (plain ? argument : "'" + word + "'");
    }
    return text;
}

std::string describe(const Outcome& outcome) {
    std::string text = !outcome.notStarted.empty() ? "could not be started: " + outcome.notStarted
                       : outcome.timedOut          ? "did not end in time and was killed"
                       : outcome.tooMuch           ? "printed too much and was killed"
                       : outcome.signal != 0
                           ? "was ended by signal " + std::to_string(outcome.signal)
                           : "ended with " + std::to_string(outcome.exitCode);
    std::string said = outcome.err + outcome.out;
    said.erase(said.find_last_not_of(" \r\n") + 1);
    constexpr std::size_t most = 400;
    if (said.size() > most)
        said = said.substr(0, most) + "...";
    for (std::size_t at = 0; (at = said.find('\n', at)) != std::string::npos; at += 3)
        said.replace(at, 1, " | ");
    return said.empty() ? text : text + ", saying: " + said;
}

} // namespace registering
