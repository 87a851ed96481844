#include "register/Content.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace registering {
namespace fs = std::filesystem;

namespace {

constexpr const char* moduleClass = "PG_ProviderModule";
constexpr const char* providerClass = "PG_Provider";
constexpr const char* capabilitiesClass = "PG_ProviderCapabilities";

// A property of the first instance of a class; "" without one.
std::string ofFirst(const std::vector<Instance>& instances, const char* className,
                    const char* property) {
    for (const Instance& instance : instances)
        if (sameName(instance.className, className))
            return text(instance, property);
    return "";
}

bool sameKeys(const Instance& one, const Instance& other) {
    constexpr std::array keys{"ProviderModuleName", "ProviderName", "CapabilityID", "Name"};
    return sameName(one.className, other.className) &&
           std::all_of(keys.begin(), keys.end(),
                       [&](const char* key) { return texts(one, key) == texts(other, key); });
}

const Instance* counterpart(const Instance& instance, const Registration& in) {
    for (const Instance& other : in.instances)
        if (sameKeys(instance, other))
            return &other;
    return nullptr;
}

bool sameValue(const std::string& property, const Instance& one, const Instance& other) {
    const mof::Value* value = find(one, property);
    const mof::Value* found = find(other, property);
    if (value == nullptr || found == nullptr || value->isArray != found->isArray)
        return value == found;
    const std::vector<std::string> items = texts(one, property);
    const std::vector<std::string> others = texts(other, property);
    return value->isArray ? sameNames({items.begin(), items.end()}, {others.begin(), others.end()})
                          : items == others;
}

std::string instanceName(const Instance& instance) {
    return sameName(instance.className, capabilitiesClass)
               ? "the capability " + capabilityName(instance)
               : instance.className + " \"" + text(instance, "Name") + '"';
}

Schema readSchema(const fs::path& file) {
    Mof mof = readMofFile(file);
    return {file, std::move(mof.classes), std::move(mof.qualifiers)};
}

Registration readRegistration(const fs::path& file) {
    Registration registration{readMofFile(file).instances};
    if (registration.module().empty() || registration.capabilities().empty())
        throw std::runtime_error(file.string() + ": registers no module with capabilities");
    return registration;
}

} // namespace

std::vector<Instance> Registration::capabilities() const {
    std::vector<Instance> result;
    for (const Instance& instance : instances)
        if (sameName(instance.className, capabilitiesClass))
            result.push_back(instance);
    return result;
}

std::string Registration::module() const { return ofFirst(instances, moduleClass, "Name"); }

std::string Registration::provider() const { return ofFirst(instances, providerClass, "Name"); }

std::string Registration::library() const {
    return "lib" + ofFirst(instances, moduleClass, "Location") + ".so";
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
    items.reserve(nameSpaces.size());
    for (const std::string& nameSpace : nameSpaces)
        items.push_back({mof::Literal::Kind::String, false, nameSpace, {}});
    std::vector<Instance> moved = instances;
    for (Instance& instance : moved)
        for (mof::PropertyInitializer& property : instance.properties)
            if (sameName(property.name, "Namespaces"))
                property.value.items = items;
    return {std::move(moved)};
}

std::vector<Difference> differences(const Registration& wanted, const Registration& found) {
    std::vector<Difference> result;
    const auto differs = [&](const Instance& instance, const std::string& how) {
        result.push_back({capabilityName(instance), instanceName(instance) + how});
    };
    for (const Instance& instance : wanted.instances) {
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
    for (const Instance& instance : found.instances)
        if (counterpart(instance, wanted) == nullptr)
            differs(instance, " is not of this version of the module");
    return result;
}

bool forInstancesAlone(const Instance& capability) {
    return texts(capability, "ProviderType") == std::vector<std::string>{"2"};
}

std::string capabilityName(const Instance& capability) { return text(capability, "ClassName"); }

std::map<std::string, NameSet, NameLess> Content::keys() const {
    std::map<std::string, NameSet, NameLess> result;
    for (const Schema* schema : {&base, &server, &own})
        for (const Class& declared : schema->classes) {
            NameSet keys(declared.keys.begin(), declared.keys.end());
            const auto above = result.find(declared.superclass);
            if (above != result.end())
                keys.insert(above->second.begin(), above->second.end());
            result.emplace(declared.name, std::move(keys));
        }
    return result;
}

Content readContent(const fs::path& directory) {
    return {readSchema(directory / "cim_schema.mof"),
            readSchema(directory / "pg_server.mof"),
            readSchema(directory / "orvex_serverprofile.mof"),
            {{readRegistration(directory / "serverprofile_registration.mof"), false},
             {readRegistration(directory / "serverobjects_registration.mof"), true}}};
}

} // namespace registering
