#include "register/Commands.h"
#include "register/Names.h"
#include "register/ServerSettings.h"
#include "register/Steps.h"

namespace registering {
namespace {

constexpr mode_t settingsMode = 0644; // the server may run as another user

// What will have been made, and was made before.
Record planned(const Settings& settings, const Situation& situation,
               const ServerSettings& serverSettings) {
    Record record = situation.record.value_or(Record());
    record.served.clear();
    for (const Place& place : situation.places) {
        if (place.served)
            record.served.push_back(place.nameSpace);
        if (!place.there)
            addName(record.nameSpaces, place.nameSpace);
        std::vector<std::string>& classes = record.classes[place.nameSpace];
        // What was installed before there were records brought the profile's own classes.
        const bool former = !situation.record && situation.registered();
        for (const Layer& layer : situation.layers(place))
            for (const Class& declared : layer.schema->classes)
                if (place.classes.count(declared.name) == 0 ||
                    (former && layer.schema == &situation.content.own))
                    addName(classes, declared.name);
    }
    const auto willMake = [&](const std::filesystem::path& file) {
        for (const std::filesystem::path& directory : directoriesMissing(file))
            addName(record.directories, directory);
    };
    willMake(settings.record);
    if (serverSettings.ours(situation.record)) {
        record.files[serverSettings.file] = serverSettings.wanted;
        willMake(serverSettings.file);
    }
    return record;
}

void writeDown(const Work& work, const ServerSettings& serverSettings) {
    const std::string text = textOf(planned(work.settings, work.situation, serverSettings));
    if (!work.situation.record || textOf(*work.situation.record) != text)
        changeFile(work, "writing down in " + work.settings.record.string() + " what is made",
                   work.settings.record, text, recordMode,
                   "leaving " + work.settings.record.string() +
                       ", by which 'serverprofile-register remove' can take back the rest");
    if (serverSettings.ours(work.situation.record) && serverSettings.found != serverSettings.wanted)
        changeFile(work, "writing " + serverSettings.file.string(), serverSettings.file,
                   serverSettings.wanted, settingsMode);
}

// What is said of a module before anything is changed.
void describeChange(const ModuleState& module, const std::vector<Difference>& changed,
                    const Report& report) {
    if (module.found.empty())
        report.ok(module.name + " is not registered yet");
    else if (changed.empty())
        report.ok(module.name + " is registered already, and the same");
    else
        for (const Difference& difference : changed)
            report.note("the registration that is there differs: " + difference.text);
    for (const std::string& nameSpace : module.found.nameSpaces())
        if (!hasName(module.wanted.nameSpaces(), nameSpace))
            report.note(nameSpace + " will not be served by " + module.name + " any more");
}

void bringUpToDate(const Work& work, const ModuleState& module) {
    if (!module.found.empty() && differences(module.wanted, module.found).empty()) {
        reload(work, module);
        return;
    }
    if (!module.found.empty())
        unregisterModule(work, module);
    if (!module.wanted.empty())
        registerModule(work, module);
}

void checkRegistrations(const Work& work) {
    for (const ModuleState& module : work.situation.modules) {
        const std::optional<std::string> status = work.server.status(module.name);
        if (!module.wanted.empty() && status != "OK")
            throw Failure(module.name + " should be OK, but cimprovider lists it as " +
                          status.value_or("not registered"));
    }
    for (const Place& place : work.situation.places) {
        const NameSet classes = work.server.classes(place.nameSpace).value_or(NameSet());
        for (const Layer& layer : work.situation.layers(place))
            for (const Class& declared : layer.schema->classes)
                if (classes.count(declared.name) == 0)
                    throw Failure(place.nameSpace + " still has no class " + declared.name);
    }
}

void checkOutcome(const Work& work) {
    if (work.settings.dryRun) {
        work.report.step("then the modules' state and their answers would be checked");
        return;
    }
    work.transaction.step(
        "checking the registration", [&] { checkRegistrations(work); });
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
        checkKeys(*situation, server, report);
        checkRivals(*situation, report);
        checkLibraries(settings, content, server, report);
    }
    if (checksFailed(report))
        return ExitCode::Check;
    for (const ModuleState& module : situation->modules)
        describeChange(module, differences(module.wanted, module.found), report);
    const ServerSettings serverSettings = registering::serverSettings(settings, *situation, server);
    if (!serverSettings.ours(situation->record))
        report.note(serverSettings.file.string() + " was changed by hand, and stays as it is");
    const ExitCode code = changing(settings, *situation, server, report, [&](const Work& work) {
        writeDown(work, serverSettings);
        for (const Place& place : situation->places)
            loadClasses(work, place);
        for (const ModuleState& module : situation->modules)
            bringUpToDate(work, module);
        checkOutcome(work);
    });
    if (code == ExitCode::Ok && settings.dryRun)
        report.result("dry run: nothing was changed");
    else if (code == ExitCode::Ok)
        for (const ModuleState& module : situation->modules)
            if (!module.wanted.empty())
                report.result(module.name + " serves " + joined(module.wanted.nameSpaces()));
    return code;
}

} // namespace registering
