#include "register/Situation.h"

#include "register/Interrupt.h"
#include "register/Library.h"
#include "register/Names.h"

#include <algorithm>
#include <stdexcept>

namespace registering {
namespace {

// Of the classes that the module needs in a namespace, those that are missing: those that the
// module brings, and the others.
struct Missing {
    std::vector<std::string> own;
    std::vector<std::string> others;
};

Missing missingClasses(const Place& place, const Situation& situation) {
    NameSet brought;
    std::vector<std::string> needed;
    for (const Class& declared : situation.content.schema) {
        brought.insert(declared.name);
        needed.push_back(declared.name);
        if (!declared.superclass.empty())
            needed.push_back(declared.superclass);
        needed.insert(needed.end(), declared.references.begin(), declared.references.end());
    }
    for (const Instance& capability : situation.wanted.capabilities())
        needed.push_back(capabilityName(capability));
    Missing missing;
    for (const std::string& name : needed)
        if (place.classes.count(name) == 0)
            addName(brought.count(name) != 0 ? missing.own : missing.others, name);
    return missing;
}

bool overlap(const Instance& one, const Instance& other, const char* property) {
    const std::vector<std::string> items = other.texts(property);
    const NameSet names(items.begin(), items.end());
    const std::vector<std::string> mine = one.texts(property);
    return std::any_of(mine.begin(), mine.end(),
                       [&](const std::string& item) { return names.count(item) != 0; });
}

} // namespace

std::optional<Tools> checkTools(const Settings& settings, Report& report) {
    std::vector<std::string> missing;
    const Tools tools = findTools(toolDirectories(settings.tools), missing);
    if (!missing.empty()) {
        report.wrong("the server's tools: no " + joined(missing) +
                         (settings.tools.empty() ? "" : " in " + settings.tools.string()),
                     "install OpenPegasus, set PEGASUS_HOME, or say with --tools where they are");
        return std::nullopt;
    }
    report.ok("the server's tools: " + tools.cimmof.string() + ", " + tools.cimprovider.string() +
              ", " + tools.cimcli.string());
    return tools;
}

std::optional<Content> checkContent(const Settings& settings, Report& report) {
    try {
        Content content = readContent(settings.mofDirectory);
        report.ok("the module's MOF: " + settings.mofDirectory.string());
        return content;
    } catch (const std::runtime_error& error) {
        report.wrong(std::string("the module's MOF: ") + error.what(),
                     "say with --mof where orvex_serverprofile.mof and "
                     "serverprofile_registration.mof are");
        return std::nullopt;
    }
}

void checkLibrary(const Settings& settings, const Content& content, const Server& server,
                  Report& report) {
    const std::vector<std::filesystem::path> configured = server.providerDirectories();
    const auto& directories = configured.empty() ? usualProviderDirectories() : configured;
    const std::vector<std::string> names(directories.begin(), directories.end());
    const std::string name = content.registration.library();
    const std::filesystem::path found = findLibrary(name, directories);
    const std::filesystem::path library = settings.library.empty() ? found : settings.library;
    std::error_code ignored;
    if (library.empty()) {
        report.wrong("the server finds no " + name + " in " + joined(names),
                     "copy it there, or add its directory to the server's providerDir "
                     "(cimconfig -s providerDir=... -c)");
        return;
    }
    if (!configured.empty() && !std::filesystem::equivalent(library, found, ignored)) {
        report.wrong(library.string() + " is not what the server loads; that is " +
                         (found.empty() ? "nothing in " + joined(names) : found.string()),
                     "copy it there as " + name +
                         ", or add its directory to the server's "
                         "providerDir (cimconfig -s providerDir=... -c)");
        return;
    }
    const LibraryProblem problem = probeLibrary(library, server.tools().cimcli, settings.timeout);
    if (problem.text.empty())
        report.ok("the server can load " + library.string());
    else
        report.wrong(library.string() + " " + problem.text, problem.advice);
}

void checkClasses(const Situation& situation, Report& report, bool own) {
    for (const Place& place : situation.places) {
        const Missing missing = missingClasses(place, situation);
        const std::string why =
            place.served
                ? ""
                : " (the module reads their definitions there, though it does not serve it)";
        if (!missing.others.empty())
            report.wrong(place.nameSpace + " has no class " + joined(missing.others) + why,
                         "load the CIM schema into it (cimmof -n " + place.nameSpace + " ...)");
        if (own && !missing.own.empty())
            report.wrong(place.nameSpace + " has no class " + joined(missing.own) + why,
                         "run serverprofile-register install");
        if (missing.others.empty() && (missing.own.empty() || !own))
            report.ok(place.nameSpace + " has the classes" +
                      (own ? "" : " that the module's own build on") + why);
    }
}

void checkRivals(const Situation& situation, Report& report) {
    for (const Instance& capability : situation.wanted.capabilities())
        for (const Instance& rival : situation.rivals)
            if (sameName(capabilityName(capability), capabilityName(rival)) &&
                overlap(capability, rival, "ProviderType") &&
                overlap(capability, rival, "Namespaces"))
                report.wrong("the module " + rival.text("ProviderModuleName") + " serves " +
                                 capabilityName(rival) + " in " +
                                 joined(rival.texts("Namespaces")) + " already",
                             "the server takes one provider for a class; unregister the other "
                             "(cimprovider -r -m " +
                                 rival.text("ProviderModuleName") + ")");
}

std::vector<Trial> tryOut(const Situation& situation, const Server& server) {
    std::vector<Trial> result;
    for (const Place& place : situation.places) {
        for (const Instance& capability : situation.wanted.capabilities()) {
            if (!place.served || !forInstancesAlone(capability) || interruptedBy() != 0)
                continue;
            const std::string name = capabilityName(capability);
            const Answer answer = server.instanceNames(place.nameSpace, name);
            // Other providers may have instances of its subclasses.
            const auto count =
                std::count_if(answer.classes.begin(), answer.classes.end(),
                              [&](const std::string& other) { return sameName(name, other); });
            const std::string request = place.nameSpace + ":" + name + ": ";
            if (!answer.error.empty())
                result.push_back({false, request + "the request " + answer.error});
            else if (count == 0)
                result.push_back({false, request + "the module answers nothing"});
            else
                result.push_back({true, request + std::to_string(count) + " from the module"});
        }
    }
    return result;
}

} // namespace registering
