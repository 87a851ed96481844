// The command line of cimhost.
#pragma once

#include "cimhost/Commands.h"
#include "cimhost/Process.h"
#include "http/Tls.h"
#include "limits/Limits.h"
#include "routing/Faults.h"

#include <Pegasus/Common/CIMName.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace embedded::cimhost {

/// A MOF file and the namespace that its declarations go into.
struct MofFile {
    Pegasus::CIMNamespaceName nameSpace;
    std::filesystem::path file;
};

struct Settings {
    std::string address = "127.0.0.1";
    std::uint16_t port = 5988;
    std::optional<std::filesystem::path> portFile;
    bool withHttp = true;                   ///< plain HTTP, on `port`
    std::optional<std::uint16_t> httpsPort; ///< none: no TLS
    std::optional<std::filesystem::path> httpsPortFile;
    http::TlsContext::Files tlsFiles;
    Pegasus::CIMNamespaceName interop;
    std::vector<Pegasus::CIMNamespaceName> nameSpaces; ///< without `interop`
    std::vector<MofFile> mofFiles;                     ///< in the order of loading
    std::vector<std::filesystem::path> mofIncludes;
    std::vector<std::filesystem::path> providerDirectories;
    std::string systemClass = "CIM_ComputerSystem"; ///< of the object manager's system
    std::optional<std::string> systemName;          ///< none: this machine's canonical name
    std::optional<std::filesystem::path> users;     ///< none: there are no users
    bool anonymousRead = false;                     ///< clients without credentials may read
    bool insecureRemote = false;   ///< without users or TLS where others can reach it, too
    std::optional<Identity> runAs; ///< from when it listens
    bool coreDumps = false;
    bool writable = false;              ///< clients may change what is in the repository
    std::vector<routing::Fault> faults; ///< of read-backs, in the order of the options
    std::chrono::seconds grace{10};
    std::chrono::seconds patience = limits::patience; ///< how long a request waits for a module
    bool keepLibraries = false;
    bool checkOnly = false;
    std::string logLevel = "info"; ///< a name that spdlog knows
    std::string wireTrace;         ///< empty: none; "-": standard error; else a directory
};

/// The settings that `argc` and `argv` ask for, or the command to run instead of serving, or, if
/// nothing is left to do, the exit code: help and version have been printed to standard output,
/// errors to standard error.
struct CommandLine {
    std::optional<Settings> settings;
    std::function<ExitCode()> command = nullptr;
    ExitCode exitCode = ExitCode::Ok;
};
CommandLine readCommandLine(int argc, const char* const* argv);

} // namespace embedded::cimhost
