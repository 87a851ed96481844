#include "routing/ProviderLibrary.h"
#include "routing/Registration.h"
#include "routing/Values.h"

#include <set>
#include <stdexcept>

namespace embedded::routing {

using namespace Pegasus;

namespace {

void note(std::vector<Finding>& findings, const std::string& line) {
    findings.push_back({Finding::Severity::Note, line});
}

void problem(std::vector<Finding>& findings, const std::string& line) {
    findings.push_back({Finding::Severity::Problem, line});
}

std::string whereDefined(const repository::View& view, const CIMName& className) {
    std::vector<CIMNamespaceName> places;
    for (const CIMNamespaceName& nameSpace : view.nameSpaces())
        if (view.hasClass(nameSpace, className))
            places.push_back(nameSpace);
    return places.empty() ? "no namespace does: load its MOF, or correct the name."
                          : "it is defined in " +
                                joined(places, [](const auto& each) { return utf8(each); }) + ".";
}

void check(const Capability& capability, const repository::View& view,
           std::vector<Finding>& findings) {
    const std::string what = utf8(capability.className) + " in " + utf8(capability.nameSpace) +
                             " (" + nameOf(capability.type) + "s)";
    note(findings, what + ": " + described(capability.provider));
    if (!view.hasNameSpace(capability.nameSpace))
        problem(findings, what + ": the namespace does not exist; load the class's MOF there.");
    else if (!view.hasClass(capability.nameSpace, capability.className))
        problem(findings,
                what + ": the namespace does not define the class, so it cannot be asked for; " +
                    whereDefined(view, capability.className));
    else if (capability.type == ProviderType::Association &&
             !view.getClass(capability.nameSpace, capability.className).isAssociation())
        problem(findings, what + ": the class is not an association, so it is never traversed.");
}

void check(const RegisteredModule& module, const std::vector<std::filesystem::path>& directories,
           std::vector<Finding>& findings) {
    const std::string what = "module \"" + utf8(module.name) + "\"";
    if (module.stopped)
        problem(findings,
                what + ": OperationalStatus says that it is stopped; its providers are blocked.");
    if (module.linked)
        return note(findings, what + ": part of this program");
    const auto file = findLibrary(directories, module.location);
    if (!file) {
        const std::string searched =
            joined(directories, [](const auto& each) { return each.string(); });
        return problem(findings,
                       what + ": " + libraryFileName(module.location) + " was not found in " +
                           (searched.empty() ? "any directory: none is given." : searched + "."));
    }
    try {
        ProviderLibrary(*file).entryPoint();
        note(findings, what + ": " + file->string());
    } catch (const std::runtime_error& error) {
        problem(findings, what + ": " + file->string() + ": " + error.what());
    }
}

} // namespace

std::vector<Finding>
Registration::check(const repository::View& view,
                    const std::vector<std::filesystem::path>& directories) const {
    std::vector<Finding> findings = _findings;
    std::set<ProviderName> asked;
    for (const Capability& capability : _capabilities) {
        routing::check(capability, view, findings);
        asked.insert(capability.provider);
    }
    for (const ProviderName& provider : _providers)
        if (asked.count(provider) == 0)
            problem(findings, described(provider) +
                                  ": no capabilities are registered for it; it is never asked.");
    for (const auto& [name, module] : _modules)
        routing::check(module, directories, findings);
    return findings;
}

} // namespace embedded::routing
