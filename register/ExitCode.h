// What the program's exit codes mean. The manual page and --help list the same numbers.
#pragma once

namespace registering {

enum class ExitCode {
    Ok = 0,         ///< done as asked, or there was nothing to do
    Check = 1,      ///< a check failed, or it was interrupted before the first step; no change
    Usage = 2,      ///< the command line is wrong
    RolledBack = 3, ///< a step failed or was interrupted; all is as it was before
    Incomplete = 4, ///< a step failed, and not everything could be put back; the output says what
};

} // namespace registering
