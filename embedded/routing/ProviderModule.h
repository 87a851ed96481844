// Providers of registered modules: found, loaded, initialised, called and terminated.
//
// The first request for a provider loads and initialises it, on that request's thread; requests
// that come meanwhile wait. If that fails, everything is undone, and the next request tries again.
#pragma once

#include "routing/CimOperations.h"
#include "routing/Registration.h"

#include <Pegasus/Provider/CIMProvider.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace embedded::routing {

/// A provider as the router sees it, wherever its code lives. Thread-safety: call() may run on
/// several threads at once.
class Provider {
  public:
    virtual ~Provider() = default;

    /// For people: "module/name".
    virtual Pegasus::String name() const = 0;

    /// The module that it is in.
    virtual const Module& module() const = 0;

    /// Calls `use` with the provider's object, which is ready for requests for `className`. Throws
    /// what `use` throws, and CIMException if the provider cannot be made ready.
    virtual void call(const Pegasus::CIMName& className,
                      const std::function<void(Pegasus::CIMProvider&)>& use) = 0;
};

/// Adds the module of `provider`, unless it is there or `provider` is null.
void addModule(std::vector<const Module*>& modules, const Provider* provider);

/// What a module's entry point does: makes the provider of that name.
using CreateProvider = std::function<Pegasus::CIMProvider*(const Pegasus::String& providerName)>;

struct ModuleSettings {
    /// Where libraries are looked for, in this order.
    std::vector<std::filesystem::path> directories;
    /// Leaves libraries mapped after their providers have ended: reports of leaks and races need
    /// the symbols.
    bool keepLibraries = false;
    /// Takes a line with the text of an exception from initialize() or terminate(), which clients
    /// do not see. Several threads may call it at once. Empty: the lines are dropped.
    std::function<void(const std::string&)> log;
    /// Modules that are part of the program and need no library, by their location.
    std::map<std::string, CreateProvider> linked;
};

class ModuleProvider;
class LoadingOrder;

/// Thread-safety: all members may be called from several threads at once.
class ProviderModules {
  public:
    using Clock = std::chrono::steady_clock;

    ProviderModules(Registration registration, ModuleSettings settings);
    /// Unloads all.
    ~ProviderModules();
    ProviderModules(const ProviderModules&) = delete;
    ProviderModules& operator=(const ProviderModules&) = delete;

    /// The provider registered for exactly that class, or null. Lives as long as this object.
    Provider* find(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className,
                   ProviderType type) const;

    /// All registered modules, in the order of their numbers, which count from 0.
    const std::vector<Module>& modules() const { return _modules; }

    /// Calls terminate() on every loaded provider, in the reverse of the order in which they became
    /// ready, and closes the libraries for good. Later requests get CIM_ERR_FAILED. Waits until
    /// `until` for requests in progress; a provider that is still busy then stays loaded, and the
    /// result is false.
    bool unloadAll(Clock::time_point until = Clock::time_point::max());

    /// A call into a provider that has not returned.
    struct Call {
        Pegasus::String provider; ///< "module/name"
        Pegasus::String from;     ///< "initialize()", or the class of a request
        Clock::time_point since;
    };
    /// All of them now, the oldest first.
    std::vector<Call> calls() const;

  private:
    const Registration _registration;
    const ModuleSettings _settings;
    std::vector<Module> _modules;
    std::unique_ptr<LoadingOrder> _order;
    std::map<ProviderName, std::unique_ptr<ModuleProvider>> _providers;
};

} // namespace embedded::routing
