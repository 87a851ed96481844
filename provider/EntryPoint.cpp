// The one symbol that the module exports.
#include "provider/ServerProfileProvider.h"

/// Called by the CIM server after it has loaded the module. A new provider whatever the name: the
/// module has only one kind.
extern "C" PEGASUS_EXPORT PEGASUS_NAMESPACE(CIMProvider) *
    PegasusCreateProvider(const PEGASUS_NAMESPACE(String) & /*providerName*/) {
    return new ServerProfileProvider;
}
