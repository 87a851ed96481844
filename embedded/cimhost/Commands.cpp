#include "cimhost/Commands.h"

#include <CLI/CLI.hpp>

namespace embedded::cimhost {
namespace {

constexpr DeclareCommand commands[] = {declareMakeCertificate, declarePasswd};

} // namespace

void declareCommands(CLI::App& app, std::function<ExitCode()>& chosen) {
    for (const DeclareCommand declare : commands)
        declare(app, chosen);
    app.require_subcommand(0, 1);
}

} // namespace embedded::cimhost
