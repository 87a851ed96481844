#include "register/Changing.h"
#include "register/Commands.h"

#include <algorithm>

namespace registering {
namespace {

bool hasClasses(const Situation& situation) {
    return std::any_of(situation.places.begin(), situation.places.end(), [&](const Place& place) {
        return std::any_of(situation.content.schema.begin(), situation.content.schema.end(),
                           [&](const Class& own) { return place.classes.count(own.name) != 0; });
    });
}

} // namespace

ExitCode remove(const Settings& settings, const Content& content, const Server& server,
                Report& report) {
    const std::optional<Situation> situation = survey(settings, content, server, report);
    if (checksFailed(report))
        return ExitCode::Check;
    if (situation->found.empty() && !hasClasses(*situation)) {
        report.result(situation->module() + " is not registered, and none of its classes are "
                                            "there: nothing to do");
        return ExitCode::Ok;
    }
    unsigned kept = 0;
    const ExitCode code = changing(settings, *situation, server, report, [&](const Work& work) {
        if (situation->serves())
            disable(work);
        if (!situation->found.empty())
            unregisterModule(work);
        for (const Place& place : situation->places)
            kept += deleteClasses(work, place);
        if (!settings.dryRun)
            work.transaction.step("checking that it is gone", [&] {
                if (server.status(situation->module()))
                    throw Failure("cimprovider still lists " + situation->module());
            });
    });
    if (code == ExitCode::Ok && settings.dryRun)
        report.result("dry run: nothing was changed");
    else if (code == ExitCode::Ok)
        report.result(situation->module() + " is removed" +
                      (kept == 0 ? "" : ", but for the classes that are kept, see above"));
    return code;
}

} // namespace registering
