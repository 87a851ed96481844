#include "register/Commands.h"
#include "register/Files.h"
#include "register/Names.h"

namespace registering {
namespace {

constexpr mode_t settingsMode = 0644; // the server may run as another user

// The settings file of the provider of the server's own objects.
struct ServerSettings {
    std::string file;
    std::string wanted;
    std::optional<std::string> found;

    // Whether the program may write the file: it is not there, or has the text that is wanted or
    // that the program wrote last, by the record.
    bool ours(const std::optional<Record>& record) const {
        if (!found || *found == wanted)
            return true;
        if (!record)
            return false;
        const auto written = record->files.find(file);
        return written != record->files.end() && written->second == *found;
    }
};

// The server lists its namespaces by what is below "root"; others have to be told.
std::string besideRoot(const std::vector<std::string>& nameSpaces) {
    std::string list;
    for (const std::string& nameSpace : nameSpaces)
        if (!sameName(nameSpace.substr(0, nameSpace.find('/')), "root"))
            list += (list.empty() ? "" : ", ") + nameSpace;
    return list.empty() ? "" : "Namespaces = " + list + "\n";
}

// FunctionalProfilesSupported are those of CIM_ObjectManagerCommunicationMechanism in the CIM
// schema: basic read, basic write, schema manipulation, instance manipulation, association
// traversal, qualifier declaration and indications, which OpenPegasus all has.
std::string textFor(const std::string& interop, const std::vector<std::string>& nameSpaces,
                    const std::string& version) {
    return "# What the provider of the server's own objects says of this server. Written by\n"
           "# serverprofile-register, which leaves the file alone once it was changed. The module\n"
           "# reads it when the server loads it.\n"
           "ServerNamespace = " +
           interop +
           "\nSystemCreationClassName = ORVEX_ObjectManagerHost\n"
           "ElementName = OpenPegasus\n"
           "Description = OpenPegasus" +
           (version.empty() ? "" : ", version " + version) +
           "\nFunctionalProfilesSupported = 2, 3, 4, 5, 6, 8, 9\n" + besideRoot(nameSpaces);
}

ServerSettings serverSettings(const Job& job, const Situation& situation) {
    ServerSettings result;
    for (const ModuleState& module : situation.modules)
        if (module.serverObjects) {
            result.file =
                job.settings.settingsDirectory + "/" + module.offered.provider() + ".conf";
            result.wanted =
                textFor(job.settings.interop, module.wanted.nameSpaces(), job.server.version());
        }
    result.found = readFile(result.file);
    return result;
}

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
        changeFile(work, "writing down in " + work.settings.record + " what is made",
                   work.settings.record, text, recordMode,
                   "leaving " + work.settings.record +
                       ", by which 'serverprofile-register remove' can take back the rest");
    if (serverSettings.ours(work.situation.record) && serverSettings.found != serverSettings.wanted)
        changeFile(work, "writing " + serverSettings.file, serverSettings.file,
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

ExitCode install(const Job& job) {
    Report& report = job.report;
    const std::optional<Situation> situation = survey(job);
    if (situation) {
        checkClasses(job, *situation, false);
        checkKeys(job, *situation);
        checkRivals(job, *situation);
        checkLibraries(job);
    }
    if (checksFailed(report))
        return ExitCode::Check;
    for (const ModuleState& module : situation->modules)
        describeChange(module, differences(module.wanted, module.found), report);
    const ServerSettings settings = serverSettings(job, *situation);
    if (!settings.ours(situation->record))
        report.note(settings.file + " was changed by hand, and stays as it is");
    const ExitCode code = changing(job, *situation, [&](const Work& work) {
        writeDown(work, settings);
        for (const Place& place : situation->places)
            loadClasses(work, place);
        for (const ModuleState& module : situation->modules)
            bringUpToDate(work, module);
        checkOutcome(work);
    });
    if (code == ExitCode::Ok && job.settings.dryRun)
        report.result("dry run: nothing was changed");
    else if (code == ExitCode::Ok)
        for (const ModuleState& module : situation->modules)
            if (!module.wanted.empty())
                report.result(module.name + " serves " + joined(module.wanted.nameSpaces()));
    return code;
}

} // namespace registering
