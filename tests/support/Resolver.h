// The host-name functions of the C library, replaced in a test program that links them.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace testsupport {

/// What gethostname() and gethostbyname() answer from now on. Single-threaded.
struct Resolver {
    /// Fills the caller's buffer as gethostname() does: cut to its size, and then not terminated.
    std::string shortName = "switch1";
    /// gethostname() fails and leaves the buffer as it is.
    bool shortNameFails = false;
    /// The h_name that gethostbyname() answers; none: it knows no host.
    std::optional<std::string> officialName = "switch1.example.net";
    /// gethostbyname() was asked for these.
    std::vector<std::string> lookups;
    /// gethostname() was given buffers of these sizes.
    std::vector<std::size_t> bufferSizes;
};

extern Resolver resolver;

} // namespace testsupport
