// What a CIM server calls when it has loaded the library.
#include "serverobjects/ServerObjectsProvider.h"

#include <Pegasus/Common/Config.h>

/// A new provider, whose settings are found by its name.
extern "C" PEGASUS_EXPORT PEGASUS_NAMESPACE(CIMProvider) *
    PegasusCreateProvider(const PEGASUS_NAMESPACE(String) & providerName) {
    const std::string name(static_cast<const char*>(providerName.getCString()));
    return new serverobjects::ServerObjectsProvider(
        [name] { return serverobjects::settingsOf(name); });
}
