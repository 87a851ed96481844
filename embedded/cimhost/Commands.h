// What cimhost does instead of serving: `cimhost COMMAND ...`.
#pragma once

#include "cimhost/ExitCode.h"

#include <functional>

namespace CLI {
class App;
}

namespace embedded::cimhost {

// Each of these declares its subcommand of `app`. If the command line has the subcommand, `chosen`
// becomes the function that runs it; the texts of its exceptions are shown to the user.

void declareMakeCertificate(CLI::App& app, std::function<ExitCode()>& chosen);
void declarePasswd(CLI::App& app, std::function<ExitCode()>& chosen);

} // namespace embedded::cimhost
