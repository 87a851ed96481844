#include "register/Situation.h"

#include "register/Names.h"

#include <algorithm>
#include <stdexcept>

namespace registering {
namespace {

// The module reads the definitions of its classes here, whatever namespace a request is for.
constexpr const char* definitions = "root/cimv2";

// The namespaces that were asked for; without a word about them those that are served already, so
// that an upgrade keeps what an administrator chose. A removal is for all of them.
std::vector<std::string> chosenNameSpaces(const Settings& settings, const Registration& found) {
    std::vector<std::string> chosen;
    for (const std::string& nameSpace : settings.nameSpaces)
        addName(chosen, nameSpace);
    if (chosen.empty() || settings.command == Command::Remove)
        for (const std::string& nameSpace : found.nameSpaces())
            addName(chosen, nameSpace);
    if (chosen.empty())
        chosen.emplace_back(definitions);
    addName(chosen, settings.interop);
    return chosen;
}

void splitRegistrations(const std::vector<Instance>& all, Situation& situation) {
    std::vector<Instance> own;
    const std::string module = situation.content.registration.module();
    for (const Instance& instance : all) {
        const bool isModule = instance.find("ProviderModuleName") == nullptr;
        if (instance.text(isModule ? "Name" : "ProviderModuleName") == module)
            own.push_back(instance);
        else if (instance.find("ProviderType") != nullptr)
            situation.rivals.push_back(instance);
    }
    situation.found = Registration(std::move(own));
}

// Whether the interop namespace is one, that is, can hold registrations.
bool checkInterop(const Settings& settings, const Server& server, Report& report) {
    const std::optional<NameSet> classes = server.classes(settings.interop);
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

void lookAt(const std::string& nameSpace, bool served, const Server& server, bool lenient,
            Situation& situation, Report& report) {
    const std::optional<NameSet> classes = server.classes(nameSpace);
    if (classes)
        situation.places.push_back({nameSpace, served, *classes});
    else if (lenient)
        report.note("there is no namespace " + nameSpace);
    else
        report.wrong("there is no namespace " + nameSpace,
                     "create it and load the CIM schema into it, or choose others with "
                     "--namespace");
}

} // namespace

std::optional<Situation> survey(const Settings& settings, const Content& content,
                                const Server& server, Report& report) {
    try {
        if (!checkInterop(settings, server, report))
            return std::nullopt;
        Situation situation;
        situation.content = content;
        splitRegistrations(server.registrations(settings.interop), situation);
        const std::vector<std::string> served = chosenNameSpaces(settings, situation.found);
        situation.wanted = content.registration.servingIn(served);
        situation.status = server.status(situation.module());
        // There is nothing to remove from a namespace that is not there any more.
        const bool lenient = settings.command == Command::Remove;
        for (const std::string& nameSpace : served)
            lookAt(nameSpace, true, server, lenient, situation, report);
        if (std::none_of(served.begin(), served.end(),
                         [](const std::string& name) { return sameName(name, definitions); }))
            lookAt(definitions, false, server, lenient, situation, report);
        return situation;
    } catch (const std::runtime_error& error) {
        report.wrong(std::string("the server does not answer: ") + error.what(),
                     "start cimserver; if it runs, look whether it hangs or whether this user may "
                     "ask it");
        return std::nullopt;
    }
}

} // namespace registering
