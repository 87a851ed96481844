#include "register/Commands.h"
#include "register/Files.h"

#include <algorithm>

namespace registering {
namespace {

bool anythingLeft(const Situation& situation) {
    if (situation.record || situation.registered())
        return true;
    return std::any_of(situation.places.begin(), situation.places.end(), [&](const Place& place) {
        const std::vector<std::string> names = situation.removable(place.nameSpace);
        return std::any_of(names.begin(), names.end(),
                           [&](const std::string& name) { return place.classes.count(name) != 0; });
    });
}

// Deletes the files that were written and not changed since.
void deleteFiles(const Work& work, const Record& record) {
    for (const auto& [file, text] : record.files) {
        const std::optional<std::string> found = readFile(file);
        if (found == text)
            changeFile(work, "deleting " + file, file, std::nullopt, 0);
        else if (found)
            work.report.note("kept " + file + ": it was changed by hand");
    }
}

// Writes down what is left, or that nothing is.
void updateRecord(const Work& work, Record left) {
    const std::string& file = work.settings.record;
    if (left.empty())
        changeFile(work, "deleting " + file, file, std::nullopt, 0);
    else
        changeFile(work, "writing down in " + file + " what is left", file, textOf(left),
                   recordMode);
    for (const std::string& directory : left.directories)
        deleteDirectory(work, directory);
}

// Takes all back; returns what had to be kept.
Record takeBack(const Work& work) {
    for (const ModuleState& module : work.situation.modules)
        if (module.serves())
            disable(work, module);
    for (const ModuleState& module : work.situation.modules)
        if (!module.found.empty())
            unregisterModule(work, module);
    Record left;
    for (const Place& place : work.situation.places) {
        const Left here = deleteClasses(work, place);
        left.classes[place.nameSpace] = here.classes;
        if (here.nameSpace)
            left.nameSpaces.push_back(place.nameSpace);
    }
    if (work.situation.record) {
        left.directories = work.situation.record->directories;
        deleteFiles(work, *work.situation.record);
    }
    return left;
}

void checkGone(const Work& work) {
    if (work.settings.dryRun)
        return;
    work.transaction.step("checking that they are gone", [&] {
        for (const ModuleState& module : work.situation.modules)
            if (work.server.status(module.name))
                throw Failure("cimprovider still lists " + module.name);
    });
}

} // namespace

ExitCode remove(const Job& job) {
    Report& report = job.report;
    const std::optional<Situation> situation = survey(job);
    if (checksFailed(report))
        return ExitCode::Check;
    if (!anythingLeft(*situation)) {
        report.result("no module is registered, and nothing is there of what comes with them: "
                      "nothing to do");
        return ExitCode::Ok;
    }
    Record left;
    const ExitCode code = changing(job, *situation, [&](const Work& work) {
        left = takeBack(work);
        checkGone(work);
        if (situation->record)
            updateRecord(work, left);
    });
    if (code == ExitCode::Ok && job.settings.dryRun)
        report.result("dry run: nothing was changed");
    else if (code == ExitCode::Ok)
        report.result(std::string("what was installed is removed") +
                      (left.empty() ? "" : ", but for what is kept, see above"));
    return code;
}

} // namespace registering
