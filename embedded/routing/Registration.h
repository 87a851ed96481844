// The table of providers by class, from the PG_ProviderModule, PG_Provider and
// PG_ProviderCapabilities instances of the interop namespace.
#pragma once

#include "repository/View.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace embedded::routing {

/// One line for the person who set the server up.
struct Finding {
    enum class Severity { Note, Problem };
    Severity severity;
    std::string text;
};

struct RegisteredModule {
    Pegasus::String name;
    std::string location;
    bool stopped = false; ///< OperationalStatus says so: its providers are blocked
    bool linked = false;  ///< it is part of the program: there is no library
};

/// Module and name of a provider: the keys of PG_Provider.
struct ProviderName {
    Pegasus::String module;
    Pegasus::String name;

    bool operator<(const ProviderName& other) const {
        return std::tie(module, name) < std::tie(other.module, other.name);
    }
};

/// `provider "P" of module "M"`, for people.
std::string described(const ProviderName& provider);

/// The values of PG_ProviderCapabilities.ProviderType that are routed.
enum class ProviderType : Pegasus::Uint16 { Instance = 2, Association = 3, Method = 5 };

/// "instance", "association" or "method".
const char* nameOf(ProviderType type);

/// What a provider answers for.
struct Capability {
    Pegasus::CIMNamespaceName nameSpace;
    Pegasus::CIMName className;
    ProviderType type;
    ProviderName provider;
};

/// Thread-safety: none while it is filled; constant afterwards.
class Registration {
  public:
    /// Nothing is registered.
    Registration() = default;
    /// Reads the instances in `interop`. Faulty ones are left out and listed in findings().
    Registration(const repository::View& view, const Pegasus::CIMNamespaceName& interop);

    /// Registers a module that is part of the program, with one provider, for the instances of each
    /// of the classes, in every namespace of `view` that defines the class and has neither another
    /// provider nor loaded instances of the class or a subclass. If there is no such namespace, the
    /// module is not registered.
    void addLinked(const repository::View& view, const ProviderName& provider,
                   const std::string& location, const std::vector<Pegasus::CIMName>& classNames);

    /// What is registered for exactly this class, or null.
    const Capability* find(const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMName& className, ProviderType type) const;

    const std::map<Pegasus::String, RegisteredModule>& modules() const { return _modules; }
    /// All providers of registered modules, with capabilities or without.
    const std::vector<ProviderName>& providers() const { return _providers; }
    /// In the order of the instances, their namespaces, and their types.
    const std::vector<Capability>& capabilities() const { return _capabilities; }
    /// What was left out, and why.
    const std::vector<Finding>& findings() const { return _findings; }
    /// Finds out why nothing answers. A note for each capability that is routed; a problem for
    /// everything that keeps a registered provider from being asked or from answering: what was
    /// left out, namespaces and classes that are not defined, libraries that are not found in
    /// `directories`, cannot be loaded, or lack the entry point. Opens the libraries, but creates
    /// no provider.
    std::vector<Finding> check(const repository::View& view,
                               const std::vector<std::filesystem::path>& directories) const;

  private:
    void addModule(const Pegasus::CIMInstance& instance);
    void addProvider(const Pegasus::CIMInstance& instance);
    void addCapabilities(const Pegasus::CIMInstance& instance);
    void add(const Capability& capability);

    std::map<Pegasus::String, RegisteredModule> _modules;
    std::vector<ProviderName> _providers;
    std::set<ProviderName> _known; ///< those of PG_Provider, to be found quickly
    std::vector<Capability> _capabilities;
    std::unordered_multimap<std::uint64_t, std::size_t> _index; ///< of a hash, into _capabilities
    std::vector<Finding> _findings;
};

} // namespace embedded::routing
