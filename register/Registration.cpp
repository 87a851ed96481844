#include "register/Registration.h"

#include "register/Names.h"

#include <algorithm>
#include <array>

namespace registering {
namespace {

constexpr const char* moduleClass = "PG_ProviderModule";
constexpr const char* providerClass = "PG_Provider";
constexpr const char* capabilitiesClass = "PG_ProviderCapabilities";

const Instance* firstOf(const std::vector<Instance>& instances, const char* className) {
    for (const Instance& instance : instances)
        if (sameName(instance.className, className))
            return &instance;
    return nullptr;
}

bool sameKeys(const Instance& one, const Instance& other) {
    constexpr std::array keys{"ProviderModuleName", "ProviderName", "CapabilityID", "Name"};
    return sameName(one.className, other.className) &&
           std::all_of(keys.begin(), keys.end(),
                       [&](const char* key) { return texts(one, key) == texts(other, key); });
}

const Instance* counterpart(const Instance& instance, const Registration& in) {
    for (const Instance& other : in.instances())
        if (sameKeys(instance, other))
            return &other;
    return nullptr;
}

// As namespaces are: in any order and case.
bool sameItems(const std::vector<std::string>& one, const std::vector<std::string>& other) {
    const NameSet names(one.begin(), one.end());
    const NameSet others(other.begin(), other.end());
    return names.size() == others.size() &&
           std::equal(names.begin(), names.end(), others.begin(), sameName);
}

bool sameValue(const std::string& property, const Instance& one, const Instance& other) {
    const mof::Value* value = find(one, property);
    const mof::Value* found = find(other, property);
    if (value == nullptr || found == nullptr || value->isArray != found->isArray)
        return value == found;
    return value->isArray ? sameItems(texts(one, property), texts(other, property))
                          : text(one, property) == text(other, property);
}

std::string instanceName(const Instance& instance) {
    return sameName(instance.className, capabilitiesClass)
               ? "the capability " + capabilityName(instance)
               : instance.className + " \"" + text(instance, "Name") + '"';
}

} // namespace

std::vector<Instance> Registration::capabilities() const {
    std::vector<Instance> result;
    for (const Instance& instance : _instances)
        if (sameName(instance.className, capabilitiesClass))
            result.push_back(instance);
    return result;
}

std::string Registration::module() const {
    const Instance* module = firstOf(_instances, moduleClass);
    return module == nullptr ? "" : text(*module, "Name");
}

std::string Registration::provider() const {
    const Instance* provider = firstOf(_instances, providerClass);
    return provider == nullptr ? "" : text(*provider, "Name");
}

std::string Registration::library() const {
    const Instance* module = firstOf(_instances, moduleClass);
    return module == nullptr ? "" : "lib" + text(*module, "Location") + ".so";
}

std::vector<std::string> Registration::nameSpaces() const {
    std::vector<std::string> result;
    for (const Instance& capability : capabilities())
        for (const std::string& nameSpace : texts(capability, "Namespaces"))
            if (isNameSpace(nameSpace))
                addName(result, nameSpace);
    return result;
}

Registration Registration::servingIn(const std::vector<std::string>& nameSpaces) const {
    std::vector<mof::Literal> items;
    for (const std::string& nameSpace : nameSpaces)
        items.push_back({mof::Literal::Kind::String, false, nameSpace, {}});
    std::vector<Instance> instances = _instances;
    for (Instance& instance : instances)
        for (mof::PropertyInitializer& property : instance.properties)
            if (sameName(property.name, "Namespaces"))
                property.value.items = items;
    return Registration(std::move(instances));
}

std::vector<Difference> differences(const Registration& wanted, const Registration& found) {
    std::vector<Difference> result;
    const auto differs = [&](const Instance& instance, const std::string& how) {
        result.push_back({capabilityName(instance), instanceName(instance) + how});
    };
    for (const Instance& instance : wanted.instances()) {
        const Instance* other = counterpart(instance, found);
        if (other == nullptr) {
            differs(instance, " is missing");
            continue;
        }
        for (const mof::PropertyInitializer& property : instance.properties)
            if (!sameValue(property.name, instance, *other))
                differs(instance, " has " + property.name + " " +
                                      joined(texts(*other, property.name)) + " instead of " +
                                      joined(texts(instance, property.name)));
    }
    for (const Instance& instance : found.instances())
        if (counterpart(instance, wanted) == nullptr)
            differs(instance, " is not of this version of the module");
    return result;
}

bool forInstancesAlone(const Instance& capability) {
    return texts(capability, "ProviderType") == std::vector<std::string>{"2"};
}

std::string capabilityName(const Instance& capability) {
    return text(capability, "ClassName");
}

} // namespace registering
