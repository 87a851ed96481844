// What the module writes to standard output while something runs.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace testsupport {

/// The lines written to standard output by `work`, without their ends of line. An exception of
/// `work` passes, and what was written is lost.
template <class Work>
std::vector<std::string> tracedBy(Work work) {
    std::cout.flush();
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    try {
        work();
    } catch (...) {
        testing::internal::GetCapturedStdout();
        throw;
    }
    std::istringstream written(testing::internal::GetCapturedStdout());
    std::vector<std::string> lines;
    for (std::string line; std::getline(written, line);)
        lines.push_back(line);
    return lines;
}

/// `messages` as they are traced: each with the module's prefix, but for those that start with '!',
/// which stand for a line of its own form (without the '!').
inline std::vector<std::string> traceLines(const std::vector<std::string>& messages) {
    std::vector<std::string> lines;
    for (const std::string& message : messages)
        lines.push_back(message[0] == '!' ? message.substr(1) : "ServerProfileProvider " + message);
    return lines;
}

} // namespace testsupport
