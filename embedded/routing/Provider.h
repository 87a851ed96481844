// A provider as the router sees it, wherever its code lives.
#pragma once

#include "routing/CimOperations.h"

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Provider/CIMProvider.h>

#include <functional>

namespace embedded::routing {

/// The values of PG_ProviderCapabilities.ProviderType that are routed.
enum class ProviderType : Pegasus::Uint16 { Instance = 2, Association = 3, Method = 5 };

/// Thread-safety: call() may run on several threads at once.
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

} // namespace embedded::routing
