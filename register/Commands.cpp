#include "register/Commands.h"

#include <iostream>

namespace registering {
namespace {

Run runner(const Settings& settings) {
    return [&settings](const Arguments& command) {
        Outcome outcome = runProgram(command, std::chrono::seconds(settings.timeout));
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

// Finds the server's tools. If one is missing, reports it and returns nothing.
std::optional<Tools> checkTools(const Settings& settings, Report& report) {
    std::vector<std::string> missing;
    const Tools tools = findTools(toolDirectories(settings.tools), missing);
    if (!missing.empty()) {
        report.wrong("the server's tools: no " + joined(missing) +
                         (settings.tools.empty() ? "" : " in " + settings.tools),
                     "install OpenPegasus, set PEGASUS_HOME, or say with --tools where they are");
        return std::nullopt;
    }
    report.ok("the server's tools: " + tools.cimmof.string() + ", " + tools.cimprovider.string() +
              ", " + tools.cimcli.string());
    return tools;
}

// Reads the package's MOF files. If they cannot be read, reports why and returns nothing.
std::optional<Content> checkContent(const Settings& settings, Report& report) {
    try {
        Content content = readContent(settings.mofDirectory);
        report.ok("the package's MOF: " + settings.mofDirectory);
        return content;
    } catch (const std::runtime_error& error) {
        report.wrong(std::string("the package's MOF: ") + error.what(),
                     "say with --mof where its files are");
        return std::nullopt;
    }
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
    const Job job{settings, *content, server, report};
    switch (settings.command) {
    case Command::Install:
        return install(job);
    case Command::Remove:
        return remove(job);
    case Command::Status:
        return status(job);
    }
    return ExitCode::Usage;
}

ExitCode changing(const Job& job, const Situation& situation,
                  const std::function<void(const Work&)>& steps) {
    Report& report = job.report;
    Scratch scratch;
    Transaction transaction(report);
    report.heading(job.settings.dryRun ? "what would be done, command by command"
                                       : "changing the server");
    try {
        steps({job, situation, scratch, transaction});
        return ExitCode::Ok;
    } catch (const std::exception& error) {
        report.error(error.what());
    }
    if (transaction.begun())
        report.heading("putting everything back");
    if (transaction.rollBack()) {
        report.error("all is as it was before");
        return ExitCode::RolledBack;
    }
    scratch.keep(); // what is to be done by hand may need the files
    report.error("not everything could be put back, see above");
    return ExitCode::Incomplete;
}

bool checksFailed(const Report& report) {
    if (report.problems() != 0)
        report.error(std::to_string(report.problems()) +
                     (report.problems() == 1 ? " check" : " checks") +
                     " failed; nothing was changed");
    else if (interruptedBy() != 0)
        report.error("interrupted; nothing was changed");
    return report.problems() != 0 || interruptedBy() != 0;
}

} // namespace registering
