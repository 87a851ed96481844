// The server as a process: listens, answers, and comes to an end in order.
#pragma once

#include "cimhost/CommandLine.h"
#include "cimhost/ExitCode.h"
#include "repository/Repository.h"
#include "routing/Registration.h"
#include "users/Accounts.h"

#include <memory>

namespace embedded::cimhost {

/// Serves until SIGINT or SIGTERM. Requests in progress are finished and providers terminated,
/// for each of which there is the grace time; when it is over, or at a second signal, the process
/// ends here. `accounts`: null without users; read again from their file at SIGHUP. REQUIRES:
/// takeSignals() has been called.
ExitCode serve(const Settings& settings, const std::shared_ptr<users::Accounts>& accounts,
               repository::Repository& repository, const routing::Registration& registration);

} // namespace embedded::cimhost
