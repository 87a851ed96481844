#include "routing/ProviderCall.h"

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/ContentLanguageList.h>

namespace embedded::routing {

Pegasus::OperationContext contextFor(const Caller& caller) {
    Pegasus::OperationContext context;
    context.insert(Pegasus::IdentityContainer(caller.userName));
    context.insert(Pegasus::AcceptLanguageListContainer(Pegasus::AcceptLanguageList()));
    context.insert(Pegasus::ContentLanguageListContainer(Pegasus::ContentLanguageList()));
    return context;
}

} // namespace embedded::routing
