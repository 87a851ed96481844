#include "provider/RequestKeys.h"

#include <Pegasus/Provider/ProviderException.h>

#include <cstdio>

PEGASUS_USING_PEGASUS;

namespace serverprofile {

FoundKey findKey(ServerProfileProvider& provider, const CIMObjectPath& path,
                 const char* className) {
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    FoundKey found;
    for (Uint32 i = 0; i < keys.size() && !found.accepted; ++i) {
        found.value = keys[i].getValue();
        found.accepted = provider._checkKey(className, plain(keys[i].getName())) != 0;
    }
    return found;
}

void requireKey(const FoundKey& key) {
    if (key.accepted)
        return;
    // All operations that need a key write this text, also those that are no getInstance.
    static const char complaint[] = "getInstance can't find key\n";
    std::fwrite(complaint, 1, sizeof(complaint) - 1, stdout);
    std::fflush(stdout);
    throw CIMInvalidParameterException(String(" invalid key name"));
}

} // namespace serverprofile
