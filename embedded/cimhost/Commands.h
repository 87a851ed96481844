// What cimhost does instead of serving: `cimhost COMMAND ...`.
#pragma once

#include "cimhost/ExitCode.h"

#include <functional>

namespace CLI {
class App;
}

namespace embedded::cimhost {

// Each of these makes its subcommand of `app`; where the command line has it, `chosen` becomes what
// to do. What that throws is for people.

void declareMakeCertificate(CLI::App& app, std::function<ExitCode()>& chosen);
void declarePasswd(CLI::App& app, std::function<ExitCode()>& chosen);

} // namespace embedded::cimhost
