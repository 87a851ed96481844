// Reads what the server's tools print.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace registering {

/// The lines of a listing, without the space around them and without empty ones.
std::vector<std::string> lines(const std::string& text);

/// The status that `cimprovider -l -s` lists for a module ("OK", "Stopped"); nothing if it does not
/// list it.
std::optional<std::string> moduleStatus(const std::string& listing, const std::string& module);

/// The class names of object paths, one a line, as `cimcli ni` and `cimcli rn` print them, with or
/// without host and namespace; other lines are passed over.
std::vector<std::string> classesOfPaths(const std::string& listing);

/// The names of the qualifiers that `cimcli eq` prints declarations of.
std::vector<std::string> declaredQualifiers(const std::string& listing);

/// The value in "Current value: lib:/usr/lib/providers", as `cimconfig -g` prints it; empty without
/// one.
std::string configuredValue(const std::string& listing);

/// The directories of a list with colons between them, relative ones below `home`.
std::vector<std::filesystem::path> directoriesOf(const std::string& list,
                                                 const std::filesystem::path& home);

} // namespace registering
