// The server as a process: listens, answers, and comes to an end in order.
#pragma once

#include "cimhost/CommandLine.h"
#include "repository/Repository.h"
#include "routing/Registration.h"
#include "users/Accounts.h"

#include <memory>

namespace embedded::cimhost {

/// Serves until SIGINT or SIGTERM, and then finishes requests in progress and terminates providers,
/// each within the grace time; when that is over, or at a second signal, the process ends here.
/// `accounts` is null without users; SIGHUP reads them from their file again. REQUIRES:
/// takeSignals() has been called.
ExitCode serve(const Settings& settings, const std::shared_ptr<users::Accounts>& accounts,
               repository::Repository& repository, const routing::Registration& registration);

} // namespace embedded::cimhost
