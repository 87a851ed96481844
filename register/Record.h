// The record of what the program has made on this machine and its CIM server. `remove` takes back
// what is in it, and nothing else.
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

/// The record in `file`; nothing if there is no such file. Throws std::runtime_error if the file
/// cannot be read, is too large, belongs to another user, or has not the form that textOf writes.
std::optional<Record> readRecord(const std::filesystem::path& file);

/// The mode of its file.
constexpr mode_t recordMode = 0600;

/// The text of the record's file.
std::string textOf(const Record& record);

} // namespace registering
