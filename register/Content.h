// What the package brings into a server: the modules, and the MOF of the classes that they need.
#pragma once

#include "register/Mof.h"
#include "register/Names.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace registering {

/// A MOF file and all that it includes.
struct Schema {
    std::filesystem::path file;
    std::vector<Class> classes; ///< in the order in which they are declared
    std::vector<std::string> qualifiers;
};

/// A module's registration: PG_ProviderModule, PG_Provider and PG_ProviderCapabilities instances.
struct Registration {
    std::vector<Instance> instances = {};

    bool empty() const { return instances.empty(); }
    std::vector<Instance> capabilities() const;
    /// The module's name.
    std::string module() const;
    /// The name of its provider.
    std::string provider() const;
    /// The file name of its library.
    std::string library() const;
    /// Each namespace that a capability names, once. Skips texts that are no namespace names.
    std::vector<std::string> nameSpaces() const;
    /// The same registration for other namespaces.
    Registration servingIn(const std::vector<std::string>& nameSpaces) const;
};

/// A difference between a registration that was found and the one that is wanted.
struct Difference {
    std::string capability; ///< the class of the capability; "" for the module or the provider
    std::string text;
};

/// The differences of `found` from `wanted`; empty if there are none. Properties that `wanted` does
/// not have, such as the state of the module, are not compared, nor is the order of an array's
/// items.
std::vector<Difference> differences(const Registration& wanted, const Registration& found);

/// Whether the capability is for instances alone (no association).
bool forInstancesAlone(const Instance& capability);

/// What a capability is called in messages: its class.
std::string capabilityName(const Instance& capability);

/// A provider module.
struct Module {
    Registration registration;
    /// It publishes the server's own objects, as its settings file says, and only where the server
    /// does not do so itself.
    bool serverObjects;
};

/// The MOF files.
struct Content {
    Schema base;   ///< as much of the CIM schema as is needed, for a namespace that has none
    Schema server; ///< the classes of the server's own objects
    Schema own;    ///< the classes of the switch that the profile's module brings
    /// The profile's module first.
    std::vector<Module> modules;

    /// The key properties of each class of the schemas, inherited ones too.
    std::map<std::string, NameSet, NameLess> keys() const;
};

/// Reads the files in `directory`. Throws std::runtime_error, saying which file and what is wrong
/// with it.
Content readContent(const std::filesystem::path& directory);

} // namespace registering
