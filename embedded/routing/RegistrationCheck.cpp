#include "routing/RegistrationCheck.h"

#include "routing/ProviderLibrary.h"
#include "routing/Values.h"

#include <algorithm>
#include <stdexcept>

namespace embedded::routing {

using namespace Pegasus;

namespace {

class Check {
  public:
    Check(const Registration& registration, const repository::View& view,
          const std::vector<std::filesystem::path>& directories)
        : _registration(registration), _view(view), _directories(directories),
          _findings(registration.findings()) {}

    std::vector<Finding> run() {
        for (const Capability& capability : _registration.capabilities())
            checkCapability(capability);
        for (const ProviderName& provider : _registration.providers())
            checkUsed(provider);
        for (const auto& [name, module] : _registration.modules())
            checkModule(module);
        return std::move(_findings);
    }

  private:
    void add(Finding::Severity severity, const std::string& line) {
        _findings.push_back({severity, line});
    }
    void problem(const std::string& line) { add(Finding::Severity::Problem, line); }

    void checkCapability(const Capability& capability) {
        const std::string what = utf8(capability.className) + " in " + utf8(capability.nameSpace) +
                                 " (" + nameOf(capability.type) + "s)";
        add(Finding::Severity::Note, what + ": " + described(capability.provider));
        if (!_view.hasNameSpace(capability.nameSpace)) {
            problem(what + ": the namespace does not exist; load the class's MOF there.");
        } else if (!_view.hasClass(capability.nameSpace, capability.className)) {
            problem(what +
                    ": the namespace does not define the class, so it cannot be asked for; " +
                    whereDefined(capability.className));
        } else if (capability.type == ProviderType::Association &&
                   !_view.getClass(capability.nameSpace, capability.className).isAssociation()) {
            problem(what + ": the class is not an association, so it is never traversed.");
        }
    }

    std::string whereDefined(const CIMName& className) const {
        std::vector<CIMNamespaceName> places;
        for (const CIMNamespaceName& nameSpace : _view.nameSpaces())
            if (_view.hasClass(nameSpace, className))
                places.push_back(nameSpace);
        return places.empty()
                   ? "no namespace does: load its MOF, or correct the name."
                   : "it is defined in " +
                         joined(places, [](const auto& each) { return utf8(each); }) + ".";
    }

    void checkUsed(const ProviderName& provider) {
        const auto& all = _registration.capabilities();
        if (std::none_of(all.begin(), all.end(), [&](const Capability& capability) {
                return capability.provider == provider;
            }))
            problem(described(provider) +
                    ": no capabilities are registered for it; it is never asked.");
    }

    void checkModule(const RegisteredModule& module) {
        const std::string what = "module \"" + utf8(module.name) + "\"";
        if (module.stopped)
            problem(what +
                    ": OperationalStatus says that it is stopped; its providers are blocked.");
        if (module.linked) {
            add(Finding::Severity::Note, what + ": part of this program");
            return;
        }
        const auto file = findLibrary(_directories, module.location);
        if (!file) {
            const std::string searched =
                joined(_directories, [](const auto& each) { return each.string(); });
            problem(what + ": " + libraryFileName(module.location) + " was not found in " +
                    (searched.empty() ? "any directory: none is given." : searched + "."));
            return;
        }
        try {
            ProviderLibrary(*file).entryPoint();
            add(Finding::Severity::Note, what + ": " + file->string());
        } catch (const std::runtime_error& error) {
            problem(what + ": " + file->string() + ": " + error.what());
        }
    }

    const Registration& _registration;
    const repository::View& _view;
    const std::vector<std::filesystem::path>& _directories;
    std::vector<Finding> _findings;
};

} // namespace

std::vector<Finding> checkRegistration(const Registration& registration,
                                       const repository::View& view,
                                       const std::vector<std::filesystem::path>& directories) {
    return Check(registration, view, directories).run();
}

} // namespace embedded::routing
