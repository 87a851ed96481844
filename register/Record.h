// What the program has made on this machine and its CIM server, written down, so that it can be
// taken back: that, and nothing else.
#pragma once

#include "register/Names.h"

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace registering {

struct Record {
    /// The namespaces that were chosen to be served.
    std::vector<std::string> served;
    /// The namespaces that were made.
    std::vector<std::string> nameSpaces;
    /// The classes that were loaded, by namespace, in the order in which they depend on each other.
    std::map<std::string, std::vector<std::string>, NameLess> classes;
    /// The files that were written, and what was written.
    std::map<std::string, std::string> files;
    /// The directories that were made for files.
    std::vector<std::string> directories;

    bool made(const std::string& nameSpace) const;
    /// Whether there is anything that could be taken back.
    bool empty() const;
};

/// The record in `file`; nothing if there is none. Throws std::runtime_error where it is none of
/// ours: not readable, too large, of another owner, or not what textOf writes.
std::optional<Record> readRecord(const std::filesystem::path& file);

/// The mode of its file.
constexpr mode_t recordMode = 0600;

/// A record as it is written down.
std::string textOf(const Record& record);

} // namespace registering
