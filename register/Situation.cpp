#include "register/Situation.h"

#include <algorithm>
#include <stdexcept>

namespace registering {
namespace {

// The profile's module reads the definitions of its classes here, whatever namespace a request is
// for.
constexpr const char* definitions = "root/cimv2";

// The namespace in which clients look for the profiles first (DSP1033), and the only one that
// is made: others are an administrator's choice, and may be misspelt.
constexpr const char* usual = "interop";

// The namespaces that were asked for; without a word about them those that are served already, or
// were to be when a run was broken off, so that an upgrade keeps what an administrator chose. What
// was installed before there were records did not know the usual one.
std::vector<std::string> chosenNameSpaces(const Settings& settings, const Situation& situation) {
    std::vector<std::string> chosen;
    addNames(chosen, settings.nameSpaces);
    if (!chosen.empty())
        return chosen;
    for (const ModuleState& module : situation.modules)
        addNames(chosen, module.found.nameSpaces());
    if (situation.record)
        addNames(chosen, situation.record->served);
    if (chosen.empty())
        return {usual, definitions};
    if (!situation.record)
        addName(chosen, usual);
    return chosen;
}

// A removal looks wherever something may be left.
std::vector<std::string> formerNameSpaces(const Settings& settings, const Situation& situation) {
    std::vector<std::string> result;
    if (situation.record) {
        addNames(result, situation.record->nameSpaces);
        for (const auto& [nameSpace, classes] : situation.record->classes)
            addName(result, nameSpace);
        return result;
    }
    result = settings.nameSpaces;
    for (const ModuleState& module : situation.modules)
        addNames(result, module.found.nameSpaces());
    addName(result, definitions);
    addName(result, settings.interop);
    return result;
}

void splitRegistrations(const std::vector<Instance>& all, Situation& situation) {
    for (const Instance& instance : all) {
        const bool isModule = find(instance, "ProviderModuleName") == nullptr;
        const std::string name = text(instance, isModule ? "Name" : "ProviderModuleName");
        const auto module =
            std::find_if(situation.modules.begin(), situation.modules.end(),
                         [&](const ModuleState& state) { return state.name == name; });
        if (module != situation.modules.end())
            module->found.instances.push_back(instance);
        else if (find(instance, "ProviderType") != nullptr)
            situation.rivals.push_back(instance);
    }
}

// Whether the interop namespace is one, that is, can hold registrations.
bool checkInterop(const Job& job, const std::optional<NameSet>& classes) {
    const auto& [settings, content, server, report] = job;
    report.ok("the server answers");
    if (!classes) {
        report.wrong("there is no namespace " + settings.interop,
                     "name the server's interop namespace with --interop; others have it as "
                     "root/interop or interop");
        return false;
    }
    std::vector<std::string> missing;
    for (const char* name : {"PG_ProviderModule", "PG_Provider", "PG_ProviderCapabilities"})
        if (classes->count(name) == 0)
            missing.emplace_back(name);
    if (!missing.empty()) {
        report.wrong(settings.interop + " has no class " + joined(missing),
                     "name the server's interop namespace with --interop, or load the server's own "
                     "schema into it");
        return false;
    }
    report.ok(settings.interop + " takes registrations");
    return true;
}

void lookAt(const Job& job, const std::string& nameSpace, bool served, Situation& situation) {
    const std::optional<NameSet> classes = job.server.classes(nameSpace);
    const bool recorded = situation.record && situation.record->made(nameSpace);
    if (classes)
        situation.places.push_back({nameSpace, served, true, recorded, *classes});
    else if (job.settings.command == Command::Remove)
        job.report.note("there is no namespace " + nameSpace);
    else if (job.settings.command == Command::Install && sameName(nameSpace, usual))
        situation.places.push_back({nameSpace, served, false, true, {}});
    else
        job.report.wrong("there is no namespace " + nameSpace,
                         sameName(nameSpace, usual)
                             ? "run serverprofile-register install"
                             : "create it and load the CIM schema into it, or choose others with "
                               "--namespace");
}

void chooseRegistrations(const Job& job, const std::vector<std::string>& served,
                         Situation& situation) {
    const std::string& interop = job.settings.interop;
    // The server's own interop namespace may have an object manager of the server's own. A second
    // one there would be one too many.
    const bool publishesItself =
        hasName(served, interop) &&
        !job.server.instanceNames(interop, "PG_ObjectManager").classes.empty();
    for (ModuleState& module : situation.modules) {
        std::vector<std::string> nameSpaces;
        for (const std::string& nameSpace : served)
            if (!module.serverObjects || !publishesItself || !sameName(nameSpace, interop))
                nameSpaces.push_back(nameSpace);
        if (!nameSpaces.empty())
            module.wanted = module.offered.servingIn(nameSpaces);
    }
}

Situation look(const Job& job, const std::optional<Record>& record) {
    const auto& [settings, content, server, report] = job;
    Situation situation;
    situation.content = content;
    situation.record = record;
    for (const Module& module : content.modules)
        situation.modules.push_back(
            {module.registration.module(), module.serverObjects, module.registration, {}, {}, {}});
    splitRegistrations(server.registrations(settings.interop), situation);
    for (ModuleState& module : situation.modules)
        module.status = server.status(module.name);
    const bool removal = settings.command == Command::Remove;
    const std::vector<std::string> served =
        removal ? formerNameSpaces(settings, situation) : chosenNameSpaces(settings, situation);
    if (!removal)
        chooseRegistrations(job, served, situation);
    for (const std::string& nameSpace : served)
        lookAt(job, nameSpace, true, situation);
    if (!removal && !hasName(served, definitions))
        lookAt(job, definitions, false, situation);
    return situation;
}

} // namespace

bool Situation::registered() const {
    return std::any_of(
        modules.begin(), modules.end(),
        [](const ModuleState& module) { return !module.found.empty(); });
}

std::vector<Layer> Situation::layers(const Place& place) const {
    std::vector<Layer> result;
    if (place.ours)
        result.push_back({&content.base, false});
    if (place.served)
        result.push_back({&content.server, false});
    result.push_back({&content.own, true});
    return result;
}

std::vector<std::string> Situation::removable(const std::string& nameSpace) const {
    std::vector<std::string> result;
    if (!record) {
        for (const Class& declared : content.own.classes)
            result.push_back(declared.name);
        return result;
    }
    const auto recorded = record->classes.find(nameSpace);
    return recorded == record->classes.end() ? result : recorded->second;
}

void Situation::addCopied(std::vector<std::string>& loaded, const NameSet& there,
                          const std::string& nameSpace, const Server& server) const {
    std::vector<std::string> associations;
    for (const std::string& name : there)
        if (sameName(name.substr(0, 3), "PG_") && interopClasses.count(name) != 0 &&
            !hasName(loaded, name)) {
            const Mof mof = readListing(server.classText(nameSpace, name), name);
            const bool points = !mof.classes.empty() && !mof.classes.front().references.empty();
            (points ? associations : loaded).push_back(name);
        }
    loaded.insert(loaded.end(), associations.begin(), associations.end());
}

std::optional<Situation> survey(const Job& job) {
    const auto& [settings, content, server, report] = job;
    std::optional<Record> record;
    try {
        record = readRecord(settings.record);
    } catch (const std::runtime_error& error) {
        const std::string text = std::string("the record of what was made: ") + error.what();
        if (settings.command != Command::Status) {
            report.wrong(
                text, "look at it; without it, remove takes back the modules and the profile's own "
                      "classes alone");
            return std::nullopt;
        }
        report.note(text);
    }
    try {
        const std::optional<NameSet> interop = server.classes(settings.interop);
        if (!checkInterop(job, interop))
            return std::nullopt;
        Situation situation = look(job, record);
        situation.interopClasses = *interop;
        return situation;
    } catch (const std::runtime_error& error) {
        report.wrong(std::string("the server does not answer: ") + error.what(),
                     "start cimserver; if it runs, look whether it hangs or whether this user may "
                     "ask it");
        return std::nullopt;
    }
}

} // namespace registering
