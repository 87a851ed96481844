// The three commands.
#pragma once

#include "register/ExitCode.h"
#include "register/Situation.h"

namespace registering {

/// Finds the tools and runs the command that the settings name.
/// Throws std::system_error where the system denies it a pipe or a temporary directory.
ExitCode run(const Settings& settings);

ExitCode install(const Settings& settings, const Content& content, const Server& server,
                 Report& report);
ExitCode remove(const Settings& settings, const Content& content, const Server& server,
                Report& report);
ExitCode status(const Settings& settings, const Content& content, const Server& server,
                Report& report);

} // namespace registering
