// A provider's object, with the library and the handle that it needs.
#pragma once

#include "routing/ProviderLibrary.h"
#include "routing/ProviderModule.h"

#include <Pegasus/Provider/CIMOMHandle.h>

#include <optional>

namespace embedded::routing {

/// Thread-safety: must not be used while it is made or destroyed.
class LoadedProvider {
  public:
    /// Opens the library (unless the module is part of the program), creates the provider `name`
    /// and initialises it. Throws CIMException CIM_ERR_FAILED, and undoes everything then.
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
    // Members are destroyed from the last to the first: the library is closed when nothing of it is
    // left.
    std::optional<ProviderLibrary> _library;
    std::optional<Pegasus::CIMOMHandle> _handle;
    Pegasus::CIMProvider* _object = nullptr;
};

} // namespace embedded::routing
