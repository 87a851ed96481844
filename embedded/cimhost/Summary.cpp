#include "cimhost/Summary.h"

#include "routing/ProviderLibrary.h"
#include "routing/Values.h"

#include <algorithm>
#include <map>
#include <utility>

namespace embedded::cimhost {
namespace {

std::string listed(const std::vector<std::string>& texts) {
    return routing::joined(
        texts, [](const std::string& text) { return text; });
}

void addOnce(std::vector<std::string>& texts, const std::string& text) {
    if (std::find(texts.begin(), texts.end(), text) == texts.end())
        texts.push_back(text);
}

std::string nameSpaceLine(const repository::View& view, const Pegasus::CIMNamespaceName& nameSpace,
                          bool isInterop) {
    const auto classes = view.subClassNames(nameSpace, Pegasus::CIMName(), true);
    std::size_t instances = 0;
    for (const Pegasus::CIMName& className : classes)
        instances += view.instances(nameSpace, className).size();
    return "namespace " + utf8(nameSpace) + (isInterop ? " (interop): " : ": ") +
           std::to_string(classes.size()) + " classes, " + std::to_string(instances) + " instances";
}

// What one provider answers for: by class, in the order of registration.
class Offers {
  public:
    void add(const routing::Capability& capability) {
        const std::string className = utf8(capability.className);
        auto found = std::find_if(_classes.begin(), _classes.end(),
                                  [&](const auto& offer) { return offer.className == className; });
        if (found == _classes.end())
            found = _classes.insert(found, {className, {}, {}});
        Offer& offer = *found;
        addOnce(offer.types, routing::nameOf(capability.type));
        addOnce(offer.nameSpaces, utf8(capability.nameSpace));
    }

    std::vector<std::string> lines(const std::string& provider) const {
        std::vector<std::string> result;
        for (const Offer& offer : _classes)
            result.push_back(provider + ": " + offer.className + " (" + listed(offer.types) +
                             ") in " + listed(offer.nameSpaces));
        if (result.empty())
            result.push_back(provider + ": no classes");
        return result;
    }

  private:
    struct Offer {
        std::string className;
        std::vector<std::string> types;
        std::vector<std::string> nameSpaces;
    };
    std::vector<Offer> _classes;
};

} // namespace

std::vector<std::string> summary(const repository::View& view,
                                 const routing::Registration& registration,
                                 const Pegasus::CIMNamespaceName& interop) {
    std::vector<std::string> lines;
    for (const Pegasus::CIMNamespaceName& nameSpace : view.nameSpaces())
        lines.push_back(nameSpaceLine(view, nameSpace, nameSpace.equal(interop)));
    for (const auto& [moduleName, module] : registration.modules())
        lines.push_back(
            "module " + utf8(moduleName) + ": " +
            (module.linked ? "part of this program" : routing::libraryFileName(module.location)) +
            (module.stopped ? ", stopped" : ""));
    std::map<routing::ProviderName, Offers> offers;
    for (const routing::Capability& capability : registration.capabilities())
        offers[capability.provider].add(capability);
    for (const routing::ProviderName& provider : registration.providers())
        for (std::string& line : offers[provider].lines("provider " + utf8(provider.module) + "/" +
                                                        utf8(provider.name)))
            lines.push_back(std::move(line));
    return lines;
}

} // namespace embedded::cimhost
