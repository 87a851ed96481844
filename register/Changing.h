// How a command changes the server: all of it, or nothing.
#pragma once

#include "register/ExitCode.h"
#include "register/Steps.h"

#include <functional>
#include <string>

namespace registering {

/// Runs `steps` in a transaction. If they throw, takes all back and says so. Then returns
/// RolledBack or Incomplete, otherwise Ok.
ExitCode changing(const Settings& settings, const Situation& situation, const Server& server,
                  Report& report, const std::function<void(const Work&)>& steps);

/// Says that checks failed, if some did.
bool checksFailed(const Report& report);

} // namespace registering
