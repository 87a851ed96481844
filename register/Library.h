// The module's library: where it is, and whether the server can load it.
#pragma once

#include "register/Process.h"

#include <filesystem>
#include <string>
#include <vector>

namespace registering {

/// Where servers keep provider libraries unless they are told otherwise: below PEGASUS_HOME, and
/// where the distributions have them.
std::vector<std::filesystem::path> usualProviderDirectories();

/// What is wrong with a library, and what to do; both empty if the server will be able to load it.
struct LibraryProblem {
    std::string text;
    std::string advice;
};

/// Tries in a process of its own, which the library may take down, with what the server's libraries
/// (beside `tools`) offer.
LibraryProblem probeLibrary(const std::filesystem::path& file, const std::filesystem::path& tools,
                            std::chrono::seconds timeout);

/// The other side of it: what the process does when it is started with probeOption and the file.
/// Returns its exit code.
int probe(const char* file);

constexpr const char* probeOption = "--probe-library";

} // namespace registering
