// Files of the system that the program reads and writes itself.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>

namespace registering {

/// A file's text; nothing if there is no such file. With `trusted`, the file has to belong to this
/// user, and nobody else may be able to write it. Throws std::runtime_error, with the file's name,
/// where it cannot be read, has more than 1 MiB, is no regular file, or is not to be trusted.
std::optional<std::string> readFile(const std::filesystem::path& file, bool trusted = false);

/// Puts a file with this text and mode in the place of what is there, at once and for good: after a
/// power failure there is the one or the other. Its directory has to be there. Throws
/// std::runtime_error.
void writeFile(const std::filesystem::path& file, const std::string& text, mode_t mode);

} // namespace registering
