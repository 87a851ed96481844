#include "register/Commands.h"

#include "register/Names.h"

#include <algorithm>

namespace registering {
namespace {

constexpr const char* installIt = "run serverprofile-register install";

void checkRegistration(const ModuleState& module, Report& report) {
    if (!module.status && module.wanted.empty())
        return;
    if (!module.status) {
        report.wrong(module.name + " is not registered", installIt);
        return;
    }
    if (module.serves())
        report.ok(module.name + " is registered, and enabled");
    else
        report.wrong(module.name + " is " + *module.status + ": it answers nothing",
                     "enable it (cimprovider -e -m " + module.name + ")");
    const std::vector<Difference> wrong = differences(module.wanted, module.found);
    for (const Instance& capability : module.wanted.capabilities())
        if (std::none_of(wrong.begin(), wrong.end(), [&](const Difference& difference) {
                return difference.capability == capabilityName(capability);
            }))
            report.ok(capabilityName(capability) + " is registered for " +
                      joined(texts(capability, "Namespaces")));
    for (const Difference& difference : wrong)
        report.wrong("the registration: " + difference.text,
                     std::string(installIt) + " to repair it");
}

void tryRequests(const Job& job, const Situation& situation) {
    Report& report = job.report;
    for (const ModuleState& module : situation.modules)
        if (!module.serves() && !module.wanted.empty()) {
            report.note("no requests are tried, as " + module.name + " does not serve");
            return;
        }
    for (const Trial& trial : tryOut(situation, job.server)) {
        if (trial.ok)
            report.ok(trial.text);
        else
            report.wrong(trial.text, "put right what is WRONG above; if nothing is, look into the "
                                     "server's log and the module's trace");
    }
    checkWalks(job, situation);
}

} // namespace

ExitCode status(const Job& job) {
    Report& report = job.report;
    const std::optional<Situation> situation = survey(job);
    const unsigned before = report.problems();
    checkLibraries(job);
    const bool loadable = report.problems() == before;
    if (situation) {
        checkClasses(job, *situation, true);
        checkKeys(job, *situation);
        checkRivals(job, *situation);
        for (const ModuleState& module : situation->modules)
            checkRegistration(module, report);
        // A request makes the server load the library, and one that is built for another can take
        // the server down.
        if (loadable)
            tryRequests(job, *situation);
        else
            report.note("no requests are tried, as the server would load that library");
    } else {
        report.note("what the server has could not be checked");
    }
    report.result(report.problems() == 0 ? "all is well"
                                         : std::to_string(report.problems()) + " WRONG, see above");
    return report.problems() == 0 ? ExitCode::Ok : ExitCode::Check;
}

} // namespace registering
