#include "register/Process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <regex>
#include <system_error>

namespace registering {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds graceAfterInterrupt{5};
// How often a signal, the end of the time or too much output is looked for.
constexpr timespec tick{0, 100'000'000};
// Far more than any program has to say that is run here.
constexpr std::size_t mostPrinted = 16UL * 1024 * 1024;

volatile std::sig_atomic_t g_signal = 0;

void remember(int signal) {
    if (g_signal == 0)
        g_signal = signal;
}

// What a program prints, in memory that cannot grow further. Unlike a pipe, nobody has to read it
// meanwhile, and a daemon that the program leaves does not hold it open.
class Printed {
  public:
    Printed() : _file(memfd_create("printed", MFD_CLOEXEC | MFD_ALLOW_SEALING)) {
        if (_file < 0 || ftruncate(_file, mostPrinted + 1) != 0 ||
            fcntl(_file, F_ADD_SEALS, F_SEAL_GROW) != 0)
            throw std::system_error(errno, std::generic_category(), "no memory for output");
        // Of a file that was opened by a name, the kernel moves the position for one writer at a
        // time; processes that write at once into what memfd_create() opened overwrite each other.
        const std::string name = "/proc/self/fd/" + std::to_string(_file);
        if (const int opened = open(name.c_str(), O_RDWR | O_CLOEXEC); opened >= 0) {
            close(_file);
            _file = opened;
        }
    }
    Printed(const Printed&) = delete;
    Printed& operator=(const Printed&) = delete;
    ~Printed() { close(_file); }

    int file() const { return _file; }
    std::size_t size() const { return static_cast<std::size_t>(lseek(_file, 0, SEEK_CUR)); }
    std::string text() const {
        std::string text(size(), '\0');
        text.resize(static_cast<std::size_t>(
            std::max(pread(_file, text.data(), text.size(), 0), ssize_t{0})));
        return text;
    }

  private:
    int _file;
};

// Starts the program; returns an error number or 0.
int spawn(pid_t& child, const Arguments& arguments, const Printed& out, const Printed& err) {
    setenv("LC_ALL", "C", 1); // the tools' words are read
    std::vector<char*> pointers;
    for (const std::string& argument : arguments)
        pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, out.file(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files, err.file(), STDERR_FILENO);
    // A group of its own: the terminal's Ctrl-C is for this program, and a kill reaches all of it.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF |
                                              POSIX_SPAWN_SETSIGMASK);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigaddset(&signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    const int error =
        posix_spawn(&child, pointers.front(), &files, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

} // namespace

void takeSignals() {
    struct sigaction action = {};
    action.sa_handler = remember;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
    action.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &action, nullptr);
}

int interruptedBy() { return g_signal; }

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

Outcome runProgram(const Arguments& arguments, std::chrono::seconds timeout) {
    Outcome outcome;
    const Printed out;
    const Printed err;
    const auto tooMuch = [&] { return out.size() + err.size() > mostPrinted; };
    // A child's end is waited for, so it must be told and not ignored.
    sigset_t childEnds;
    sigemptyset(&childEnds);
    sigaddset(&childEnds, SIGCHLD);
    sigprocmask(SIG_BLOCK, &childEnds, nullptr);
    std::signal(SIGCHLD, SIG_DFL);
    const bool alreadyInterrupted = interruptedBy() != 0; // putting things back is not cut short
    Clock::time_point end = Clock::now() + timeout;
    pid_t child = 0;
    if (const int error = spawn(child, arguments, out, err)) {
        outcome.notStarted = std::strerror(error);
        return outcome;
    }
    int status = 0;
    while (waitpid(child, &status, WNOHANG) != child) {
        if (interruptedBy() != 0 && !alreadyInterrupted)
            end = std::min(end, Clock::now() + graceAfterInterrupt);
        outcome.timedOut = !tooMuch() && Clock::now() >= end;
        if (outcome.timedOut || tooMuch())
            kill(-child, SIGKILL);
        sigtimedwait(&childEnds, nullptr, &tick);
    }
    outcome.tooMuch = tooMuch();
    outcome.out = out.text();
    outcome.err = err.text();
    if (WIFEXITED(status))
        outcome.exitCode = WEXITSTATUS(status);
    else
        outcome.signal = WTERMSIG(status);
    return outcome;
}

std::string commandText(const Arguments& arguments) {
    static const std::regex plain(R"([\w./:=,-]+)");
    static const std::regex quote("'");
    std::string text;
    for (const std::string& argument : arguments)
        text += (text.empty() ? "" : " ") +
                (std::regex_match(argument, plain)
                     ? argument
                     : "'" + std::regex_replace(argument, quote, R"('\'')") + "'");
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
    static const std::regex lineEnd("\n");
    return said.empty() ? text : text + ", saying: " + std::regex_replace(said, lineEnd, " | ");
}

} // namespace registering
