#include "routing/Registration.h"

#include "routing/Values.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace embedded::routing {

using namespace Pegasus;

namespace {

const std::array supportedInterfaceVersions{"2.1.0", "2.2.0", "2.3.0", "2.5.0", "2.6.0"};

// Values of PG_ProviderModule.UserContext and CIM_ManagedSystemElement.OperationalStatus.
constexpr Uint16 designatedUser = 3;
constexpr Uint16 statusStopped = 10;

/// Why an instance cannot be taken; becomes a finding with the instance's path before it.
struct Fault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The value of that property; an empty one without it or if it has another type.
template <class T>
T get(const CIMInstance& instance, const char* property) {
    const CIMValue value = valueOf(instance, CIMName(property)).value_or(CIMValue());
    T result{};
    if (!value.isNull() && value.typeCompatible(CIMValue(result)))
        value.get(result);
    return result;
}

void require(const CIMInstance& instance, std::initializer_list<const char*> properties) {
    for (const char* property : properties) {
        const CIMValue value = valueOf(instance, CIMName(property)).value_or(CIMValue());
        if (value.isNull() || (value.isArray() && value.getArraySize() == 0))
            throw Fault(std::string("Missing ") + property + " which is required property in " +
                        utf8(instance.getClassName()) + " class.");
    }
}

ProviderType routedType(Uint16 value) {
    for (const auto type :
         {ProviderType::Instance, ProviderType::Association, ProviderType::Method})
        if (value == Uint16(type))
            return type;
    throw Fault("ProviderType " + std::to_string(value) +
                " is not served here; 2 (Instance), 3 (Association) and 5 (Method) are.");
}

std::vector<Capability> capabilitiesOf(const CIMInstance& instance, const ProviderName& provider) {
    const auto className = get<String>(instance, "ClassName");
    if (!CIMName::legal(className))
        throw Fault("ClassName \"" + utf8(className) + "\" is not a class name.");
    std::vector<Capability> all;
    const auto types = get<Array<Uint16>>(instance, "ProviderType");
    const auto nameSpaces = get<Array<String>>(instance, "Namespaces");
    for (Uint32 i = 0; i < nameSpaces.size(); ++i) {
        if (!CIMNamespaceName::legal(nameSpaces[i]))
            throw Fault("Namespaces: \"" + utf8(nameSpaces[i]) + "\" is not a namespace name.");
        for (Uint32 j = 0; j < types.size(); ++j)
            all.push_back({CIMNamespaceName(nameSpaces[i]), CIMName(className),
                           routedType(types[j]), provider});
    }
    return all;
}

std::uint64_t hashOf(const CIMNamespaceName& nameSpace, const CIMName& className) {
    using Pegasus::embedding::foldedHash;
    return foldedHash(nameSpace.getString()) * 31 + foldedHash(className.getString());
}

} // namespace

std::string described(const ProviderName& provider) {
    return "provider \"" + utf8(provider.name) + "\" of module \"" + utf8(provider.module) + "\"";
}

const char* nameOf(ProviderType type) {
    return type == ProviderType::Association ? "association"
           : type == ProviderType::Method    ? "method"
                                             : "instance";
}

Registration::Registration(const repository::View& view, const CIMNamespaceName& interop) {
    const auto problem = [this](std::string text) {
        _findings.push_back({Finding::Severity::Problem, std::move(text)});
    };
    if (!view.hasNameSpace(interop)) {
        problem("The interop namespace " + utf8(interop) +
                " does not exist, so nothing is registered.");
        return;
    }
    // Modules first, since providers name them, and capabilities last.
    using Add = void (Registration::*)(const CIMInstance&);
    for (const auto& [className, add] :
         {std::pair<const char*, Add>{"PG_ProviderModule", &Registration::addModule},
          {"PG_Provider", &Registration::addProvider},
          {"PG_ProviderCapabilities", &Registration::addCapabilities}}) {
        if (!view.hasClass(interop, CIMName(className))) {
            problem(std::string("The interop namespace ") + utf8(interop) +
                    " does not define the class " + className +
                    ", so nothing can be registered. Load the registration schema there.");
            continue;
        }
        const repository::InstanceList instances = view.instances(interop, CIMName(className));
        for (std::size_t i = 0; i < instances.size(); ++i) {
            const CIMInstance instance = instances[i].instance();
            try {
                (this->*add)(instance);
            } catch (const Fault& fault) {
                problem(utf8(instance.getPath().toString()) + ": " + fault.what());
            }
        }
    }
}

void Registration::addModule(const CIMInstance& instance) {
    require(instance,
            {"Name", "Vendor", "Version", "InterfaceType", "InterfaceVersion", "Location"});
    const std::string type = utf8(get<String>(instance, "InterfaceType"));
    if (type != "C++Default")
        throw Fault("Unsupported InterfaceType value: \"" + type +
                    R"("; "C++Default" is supported.)");
    const std::string version = utf8(get<String>(instance, "InterfaceVersion"));
    if (std::find(supportedInterfaceVersions.begin(), supportedInterfaceVersions.end(), version) ==
        supportedInterfaceVersions.end())
        throw Fault("Unsupported InterfaceVersion value: \"" + version + "\"; supported are " +
                    joined(supportedInterfaceVersions, [](const char* each) { return each; }) +
                    ".");
    if (get<Uint16>(instance, "UserContext") == designatedUser)
        require(instance, {"DesignatedUserContext"});
    RegisteredModule module{get<String>(instance, "Name"), utf8(get<String>(instance, "Location"))};
    const auto statuses = get<Array<Uint16>>(instance, "OperationalStatus");
    for (Uint32 i = 0; i < statuses.size(); ++i)
        module.stopped = module.stopped || statuses[i] == statusStopped;
    _modules.emplace(module.name, module);
}

void Registration::addProvider(const CIMInstance& instance) {
    require(instance, {"ProviderModuleName", "Name"});
    const ProviderName provider{get<String>(instance, "ProviderModuleName"),
                                get<String>(instance, "Name")};
    if (_modules.count(provider.module) == 0)
        throw Fault("The provider module \"" + utf8(provider.module) + "\" is not registered.");
    _providers.push_back(provider);
    _known.insert(provider);
}

void Registration::addCapabilities(const CIMInstance& instance) {
    require(instance, {"ProviderModuleName", "ProviderName", "CapabilityID", "ProviderType",
                       "ClassName", "Namespaces"});
    const ProviderName provider{get<String>(instance, "ProviderModuleName"),
                                get<String>(instance, "ProviderName")};
    if (_known.count(provider) == 0)
        throw Fault("The " + described(provider) + " is not registered.");
    const std::vector<Capability> wanted = capabilitiesOf(instance, provider);
    // All or nothing: an instance with one fault gives no capability at all.
    for (const Capability& capability : wanted)
        if (const Capability* const taken =
                find(capability.nameSpace, capability.className, capability.type))
            throw Fault("A provider is already registered for the specified capability. (" +
                        utf8(taken->className) + " in " + utf8(taken->nameSpace) + ", type " +
                        std::to_string(Uint16(taken->type)) + ": " + described(taken->provider) +
                        ")");
    for (const Capability& capability : wanted)
        if (find(capability.nameSpace, capability.className, capability.type) == nullptr)
            add(capability); // not given twice
}

void Registration::add(const Capability& capability) {
    _index.emplace(hashOf(capability.nameSpace, capability.className), _capabilities.size());
    _capabilities.push_back(capability);
}

void Registration::addLinked(const repository::View& view, const ProviderName& provider,
                             const std::string& location, const std::vector<CIMName>& classNames) {
    const std::size_t before = _capabilities.size();
    const auto taken = [&](const CIMNamespaceName& nameSpace, const CIMName& className) {
        std::vector<CIMName> all = view.subClassNames(nameSpace, className, true);
        all.push_back(className);
        return std::any_of(all.begin(), all.end(), [&](const CIMName& name) {
            return find(nameSpace, name, ProviderType::Instance) != nullptr ||
                   view.instances(nameSpace, name).size() != 0;
        });
    };
    for (const CIMNamespaceName& nameSpace : view.nameSpaces()) {
        for (const CIMName& className : classNames)
            if (view.hasClass(nameSpace, className) && !taken(nameSpace, className))
                add({nameSpace, className, ProviderType::Instance, provider});
    }
    if (_capabilities.size() != before) {
        _modules.insert_or_assign(provider.module,
                                  RegisteredModule{provider.module, location, false, true});
        _providers.push_back(provider);
    }
}

const Capability* Registration::find(const CIMNamespaceName& nameSpace, const CIMName& className,
                                     ProviderType type) const {
    const auto [first, last] = _index.equal_range(hashOf(nameSpace, className));
    for (auto each = first; each != last; ++each) {
        const Capability& capability = _capabilities[each->second];
        if (capability.type == type && capability.className.equal(className) &&
            capability.nameSpace.equal(nameSpace))
            return &capability;
    }
    return nullptr;
}

} // namespace embedded::routing
