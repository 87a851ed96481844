// A provider's object and what it stands on: its library and its handle.
#pragma once

#include "routing/ProviderLibrary.h"
#include "routing/ProviderModule.h"

#include <Pegasus/Provider/CIMOMHandle.h>

#include <optional>

namespace embedded::routing {

/// Thread-safety: the one who makes and unmakes it sees to it that nobody uses it meanwhile.
class LoadedProvider {
  public:
    /// Opens the library, unless the module is part of the program, has it create the provider
    /// `name` and initialises that. Throws CIMException CIM_ERR_FAILED, with everything undone
    /// again.
    LoadedProvider(const RegisteredModule& module, const ProviderName& name,
                   const ModuleSettings& settings);
    /// Calls terminate(), then closes the library, if there is one.
    ~LoadedProvider();
    LoadedProvider(const LoadedProvider&) = delete;
    LoadedProvider& operator=(const LoadedProvider&) = delete;

    Pegasus::CIMProvider& object() { return *_object; }

  private:
    void create(const RegisteredModule& module);
    bool initialize();
    void terminate();
    void log(const char* operation, const Pegasus::CIMException& error) const noexcept;

    const ProviderName& _name;
    const ModuleSettings& _settings;
    // Members are unmade from the last to the first: the library goes when nothing of it is left.
    std::optional<ProviderLibrary> _library;
    std::optional<Pegasus::CIMOMHandle> _handle;
    Pegasus::CIMProvider* _object = nullptr;
};

} // namespace embedded::routing
