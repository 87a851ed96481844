// The command line: what is asked for, and where things are.
#pragma once

#include "register/ExitCode.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace registering {

enum class Command { Install, Remove, Status };

struct Settings {
    Command command = Command::Status;
    /// The namespaces to serve. Empty: those that are served already, else the usual ones.
    std::vector<std::string> nameSpaces;
    /// The server's own interop namespace.
    std::string interop = "root/PG_InterOp";
    std::filesystem::path mofDirectory;
    /// Where the provider of the server's own objects finds its settings.
    std::filesystem::path settingsDirectory;
    /// What was made is written down here.
    std::filesystem::path record;
    /// Where the server answers clients. Empty: as its configuration says.
    std::string url;
    /// A library to check. Empty: looked for in the server's provider directories.
    std::filesystem::path library;
    /// Empty: PEGASUS_HOME/bin, then PATH and the usual places.
    std::filesystem::path tools;
    std::chrono::seconds timeout{60};
    bool dryRun = false;
    bool verbose = false;
};

/// What the command line says: settings, or, when there is nothing more to do (help, version, an
/// error), the code to end with.
struct CommandLine {
    std::optional<Settings> settings;
    ExitCode exitCode = ExitCode::Ok;
};

/// Reads the command line; help, version and complaints go to the standard streams.
CommandLine readCommandLine(int argc, const char* const* argv);

} // namespace registering
