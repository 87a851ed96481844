#include "register/Commands.h"

#include "register/Steps.h"

#include <iostream>

namespace registering {
namespace {

Run runner(const Settings& settings) {
    return [&settings](const Arguments& command) {
        Outcome outcome = runProgram(command, settings.timeout);
        if (settings.verbose)
            std::cout << "         $ " << commandText(command) << "\n           "
                      << describe(outcome) << std::endl;
        return outcome;
    };
}

Run dryRunner() {
    return [](const Arguments& command) {
        std::cout << "         $ " << commandText(command) << std::endl;
        Outcome outcome;
        outcome.exitCode = 0;
        return outcome;
    };
}

} // namespace

ExitCode run(const Settings& settings) {
    Report report;
    report.heading("checking");
    const std::optional<Tools> tools = checkTools(settings, report);
    const std::optional<Content> content = checkContent(settings, report);
    if (!tools || !content) {
        report.error("nothing was changed, and nothing more was checked");
        return ExitCode::Check;
    }
    const Run ask = runner(settings);
    const Server server(*tools, ask, settings.dryRun ? dryRunner() : ask);
    switch (settings.command) {
    case Command::Install:
        return install(settings, *content, server, report);
    case Command::Remove:
        return remove(settings, *content, server, report);
    case Command::Status:
        return status(settings, *content, server, report);
    }
    return ExitCode::Usage;
}

} // namespace registering
