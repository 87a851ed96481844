// The three commands.
#pragma once

#include "register/Situation.h"
#include "register/Steps.h"

#include <functional>

namespace registering {

/// Finds the tools and runs the command that the settings name.
/// Throws std::system_error where the system denies it a pipe or a temporary directory.
ExitCode run(const Settings& settings);

ExitCode install(const Job& job);
ExitCode remove(const Job& job);
ExitCode status(const Job& job);

/// Says that checks failed, if some did; returns whether.
bool checksFailed(const Report& report);

/// Runs `steps` in a transaction: all of them, or none. If one throws, takes all back and says so;
/// then returns RolledBack or Incomplete, otherwise Ok.
ExitCode changing(const Job& job, const Situation& situation,
                  const std::function<void(const Work&)>& steps);

} // namespace registering
