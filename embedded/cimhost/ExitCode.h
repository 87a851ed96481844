// What the program's exit codes mean. docs and --help list the same numbers.
#pragma once

namespace embedded::cimhost {

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

} // namespace embedded::cimhost
