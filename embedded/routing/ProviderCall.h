// One call of one interface of one provider.
#pragma once

#include "routing/CimOperations.h"
#include "routing/Errors.h"
#include "routing/Provider.h"

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/OperationContext.h>

namespace embedded::routing {

/// The containers that a provider may count on.
inline Pegasus::OperationContext contextFor(const Caller& caller) {
    Pegasus::OperationContext context;
    context.insert(Pegasus::IdentityContainer(caller.userName));
    context.insert(Pegasus::AcceptLanguageListContainer(Pegasus::AcceptLanguageList()));
    context.insert(Pegasus::ContentLanguageListContainer(Pegasus::ContentLanguageList()));
    return context;
}

/// Calls `function` with the provider's `Interface`. Throws whatever `function` throws as a
/// CIMException, but for CIM_ERR_SUCCESS, which is no error.
template <class Interface, class Function>
void callProvider(Provider& provider, const Pegasus::CIMName& className, Function&& function) {
    provider.call(
        className,
        [&](Pegasus::CIMProvider& object) {
            try {
                // Here and not further out, while the module is sure to be loaded: an exception may
                // be of a type of the module's own.
                asCimErrors([&] {
                    auto* const asked = dynamic_cast<Interface*>(&object);
                    if (asked == nullptr)
                        throw Pegasus::CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED,
                                                    "Invalid provider interface.");
                    function(*asked);
                });
            } catch (const Pegasus::CIMException& error) {
                if (error.getCode() != Pegasus::CIM_ERR_SUCCESS)
                    throw;
            }
        });
}

} // namespace embedded::routing
