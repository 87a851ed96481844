#include "register/Commands.h"

#include "register/Names.h"

#include <algorithm>

namespace registering {
namespace {

constexpr const char* installIt = "run serverprofile-register install";

void checkRegistration(const Situation& situation, Report& report) {
    const std::string module = situation.module();
    if (!situation.status) {
        report.wrong(module + " is not registered", installIt);
        return;
    }
    if (situation.serves())
        report.ok(module + " is registered, and enabled");
    else
        report.wrong(module + " is " + *situation.status + ": it answers nothing",
                     "enable it (cimprovider -e -m " + module + ")");
    const std::vector<Difference> wrong = differences(situation.wanted, situation.found);
    for (const Instance& capability : situation.wanted.capabilities())
        if (std::none_of(wrong.begin(), wrong.end(), [&](const Difference& difference) {
                return difference.capability == capabilityName(capability);
            }))
            report.ok(capabilityName(capability) + " is registered for " +
                      joined(capability.texts("Namespaces")));
    for (const Difference& difference : wrong)
        report.wrong("the registration: " + difference.text,
                     std::string(installIt) + " to repair it");
}

void tryRequests(const Situation& situation, const Server& server, Report& report) {
    if (!situation.serves()) {
        report.note("no requests are tried, as the module does not serve");
        return;
    }
    for (const Trial& trial : tryOut(situation, server)) {
        if (trial.ok)
            report.ok(trial.text);
        else
            report.wrong(trial.text, "put right what is WRONG above; if nothing is, look into the "
                                     "server's log and the module's trace");
    }
}

} // namespace

ExitCode status(const Settings& settings, const Content& content, const Server& server,
                Report& report) {
    const std::optional<Situation> situation = survey(settings, content, server, report);
    const unsigned before = report.problems();
    checkLibrary(settings, content, server, report);
    const bool loadable = report.problems() == before;
    if (situation) {
        checkClasses(*situation, report, true);
        checkRivals(*situation, report);
        checkRegistration(*situation, report);
        // A request makes the server load the library, and one that is built for another can take
        // the server down.
        if (loadable)
            tryRequests(*situation, server, report);
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
