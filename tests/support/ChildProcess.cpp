#include "support/ChildProcess.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <system_error>

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace testsupport {

using Clock = std::chrono::steady_clock;

ChildProcess::ChildProcess(const std::function<void()>& work) {
    std::cout.flush();
    std::fflush(stdout);
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    _process = ::fork();
    if (_process == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
        try {
            work();
        } catch (...) {
            std::cout << "the work ended with an exception\n";
        }
        std::cout.flush();
        std::fflush(stdout);
        ::_exit(0);
    }
    ::close(ends[1]);
    _output = ends[0];
    if (_process < 0) {
        ::close(_output);
        throw std::system_error(errno, std::generic_category(), "fork");
    }
}

ChildProcess::~ChildProcess() {
    ::kill(_process, SIGKILL);
    ::waitpid(_process, nullptr, 0);
    ::close(_output);
}

const std::string& ChildProcess::outputUntil(const std::string& text, unsigned times,
                                             std::chrono::milliseconds atMost) {
    const Clock::time_point end = Clock::now() + atMost;
    while (!_ended && occurrences(_written, text) < times) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        pollfd readable = {_output, POLLIN, 0};
        if (left.count() <= 0 || ::poll(&readable, 1, static_cast<int>(left.count())) <= 0)
            break;
        char piece[4096];
        const ssize_t size = ::read(_output, piece, sizeof(piece));
        _ended = size <= 0;
        if (!_ended)
            _written.append(piece, static_cast<std::size_t>(size));
    }
    return _written;
}

const std::string& ChildProcess::outputFor(std::chrono::milliseconds time) {
    // More often than it can be written: only the time and the end of the process count.
    return outputUntil("\n", ~0U, time);
}

unsigned occurrences(const std::string& whole, const std::string& text) {
    unsigned count = 0;
    for (std::size_t at = whole.find(text); at != std::string::npos;
         at = whole.find(text, at + text.size()))
        ++count;
    return count;
}

} // namespace testsupport
