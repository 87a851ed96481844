// The server's own command line tools: where they are, their commands, and what they print.
#pragma once

#include "register/Process.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace registering {

/// A command is made only of names that are names: each throws std::runtime_error for a text that
/// is none, wherever it came from.
struct Tools {
    std::filesystem::path cimmof;
    std::filesystem::path cimprovider;
    std::filesystem::path cimcli;
    std::filesystem::path cimconfig; ///< empty: not there; it only tells how the server is set
    std::filesystem::path cimserver; ///< empty: not there; it only tells its version

    /// With `update`, classes that are there in another version are replaced; without, classes that
    /// are there are left alone. Included files are looked for beside the file.
    Arguments loadMof(const std::string& nameSpace, const std::filesystem::path& file,
                      bool update) const;
    Arguments listModules() const { return {cimprovider, "-l", "-s"}; }
    /// `action`: "-e" enables a module, "-d" disables it, "-r" removes it.
    Arguments onModule(const char* action, const std::string& module) const;
    /// A command of cimcli for a namespace.
    Arguments onNameSpace(const char* command, const std::string& nameSpace,
                          const char* option = nullptr) const;
    /// A command of cimcli for a class or a qualifier.
    Arguments onName(const char* command, const std::string& nameSpace, const std::string& name,
                     const char* option = nullptr) const;
    Arguments deleteNameSpace(const std::string& nameSpace) const;
};

/// Where tools are looked for, in order: in `given` alone, or in PEGASUS_HOME/bin, PATH and the
/// usual places of administrators' programs.
std::vector<std::filesystem::path> toolDirectories(const std::filesystem::path& given);

/// The program serverprofile-walk: beside this one, or in PATH; empty if there is none.
std::filesystem::path findWalk();

/// The first of the directories that has the file `name`; `program`: as one that can be run.
/// Returns the file, or an empty path if none has it.
std::filesystem::path findFile(const std::string& name,
                               const std::vector<std::filesystem::path>& directories, bool program);

/// Finds the tools. Those that are not there are left empty and their names appended to `missing`.
Tools findTools(const std::vector<std::filesystem::path>& directories,
                std::vector<std::string>& missing);

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
