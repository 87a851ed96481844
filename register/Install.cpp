#include "register/Changing.h"
#include "register/Commands.h"
#include "register/Names.h"

namespace registering {
namespace {

bool serves(const Registration& registration, const std::string& nameSpace) {
    const std::vector<std::string> served = registration.nameSpaces();
    return NameSet(served.begin(), served.end()).count(nameSpace) != 0;
}

void checkOutcome(const Work& work) {
    if (work.settings.dryRun) {
        work.report.step("then the module's state and its answers would be checked");
        return;
    }
    work.transaction.step("checking the registration", [&] {
        const std::string module = work.situation.module();
        const std::optional<std::string> status = work.server.status(module);
        if (status != "OK")
            throw Failure(module + " should be OK, but cimprovider lists it as " +
                          status.value_or("not registered"));
        for (const Place& place : work.situation.places) {
            const NameSet classes = work.server.classes(place.nameSpace).value_or(NameSet());
            for (const Class& declared : work.situation.content.schema)
                if (classes.count(declared.name) == 0)
                    throw Failure(place.nameSpace + " still has no class " + declared.name);
        }
    });
    work.transaction.step("trying requests", [&] {
        for (const Trial& trial : tryOut(work.situation, work.server)) {
            if (!trial.ok)
                throw Failure(trial.text);
            work.report.ok(trial.text);
        }
    });
}

} // namespace

ExitCode install(const Settings& settings, const Content& content, const Server& server,
                 Report& report) {
    const std::optional<Situation> situation = survey(settings, content, server, report);
    if (situation) {
        checkClasses(*situation, report, false);
        checkRivals(*situation, report);
        checkLibrary(settings, content, server, report);
    }
    if (checksFailed(report))
        return ExitCode::Check;
    const std::vector<Difference> changed = differences(situation->wanted, situation->found);
    if (changed.empty())
        report.ok(situation->module() + " is registered already, and the same");
    else if (situation->found.empty())
        report.ok(situation->module() + " is not registered yet");
    else
        for (const Difference& difference : changed)
            report.note("the registration that is there differs: " + difference.text);
    for (const std::string& nameSpace : situation->found.nameSpaces())
        if (!serves(situation->wanted, nameSpace))
            report.note(nameSpace +
                        " will not be served any more; the module's classes stay there");
    const ExitCode code = changing(settings, *situation, server, report, [&](const Work& work) {
        for (const Place& place : situation->places)
            loadClasses(work, place);
        if (changed.empty()) {
            reload(work);
        } else {
            if (!situation->found.empty())
                unregisterModule(work);
            registerModule(work);
        }
        checkOutcome(work);
    });
    if (code == ExitCode::Ok && settings.dryRun)
        report.result("dry run: nothing was changed");
    else if (code == ExitCode::Ok)
        report.result(situation->module() + " serves " + joined(situation->wanted.nameSpaces()));
    return code;
}

} // namespace registering
