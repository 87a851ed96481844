// The command line: what is asked for, and where things are.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace registering {

enum class ExitCode {
    Ok = 0,         ///< done as asked, or there was nothing to do
    Check = 1,      ///< a check failed, or it was interrupted before the first step; no change
    Usage = 2,      ///< the command line is wrong
    RolledBack = 3, ///< a step failed or was interrupted; all is as it was before
    Incomplete = 4, ///< a step failed, and not everything could be put back; the output says what
};

enum class Command { Install, Remove, Status };

struct Settings {
    Command command = Command::Status;
    /// The namespaces to serve. Empty: those that are served already, else the usual ones.
    std::vector<std::string> nameSpaces;
    /// The server's own interop namespace.
    std::string interop = "root/PG_InterOp";
    std::string mofDirectory;
    /// Where the provider of the server's own objects finds its settings.
    std::string settingsDirectory;
    /// What was made is written down here.
    std::string record;
    /// Where the server answers clients. Empty: as its configuration says.
    std::string url;
    /// A library to check. Empty: looked for in the server's provider directories.
    std::string library;
    /// Empty: PEGASUS_HOME/bin, then PATH and the usual places.
    std::string tools;
    unsigned timeout = 60; ///< in seconds
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
