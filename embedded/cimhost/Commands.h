// What cimhost does instead of serving, `cimhost COMMAND ...`, and its exit codes.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace embedded::cimhost {

/// What the program's exit codes mean. docs and --help list the same numbers.
enum class ExitCode {
    Ok = 0,
    RuntimeFailure = 1, ///< anything that has no code of its own
    Usage = 2,          ///< the command line is wrong
    Mof = 3,            ///< a MOF file cannot be read or has no meaning
    Check = 4,          ///< --check has found a problem
    CannotListen = 5,   ///< the address or port cannot be had
    ProviderStuck = 6,  ///< a provider did not return within the grace time
    Interrupted = 7,    ///< a second signal came while requests were being finished
};

// Each of these declares its subcommand of `app`. If the command line has the subcommand, `chosen`
// becomes the function that runs it; the texts of its exceptions are shown to the user.

void declareMakeCertificate(CLI::App& app, std::function<ExitCode()>& chosen);
void declarePasswd(CLI::App& app, std::function<ExitCode()>& chosen);

} // namespace embedded::cimhost
