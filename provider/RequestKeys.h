// How an operation finds its row by the class, and its object by the key, of the request's path.
#pragma once

#include "common/Selection.h"
#include "provider/ServerProfileProvider.h"

namespace serverprofile {

/// The key binding that names the object of a request.
struct FoundKey {
    bool accepted = false;
    Pegasus::String value; ///< of the accepted binding, else of the last one that was tried
};

/// The first key binding of `path` that names an object of its class `className` (see _checkKey).
FoundKey findKey(ServerProfileProvider& provider, const Pegasus::CIMObjectPath& path,
                 const char* className);

/// Complains on standard output and throws CIMInvalidParameterException when `key` was not
/// accepted.
void requireKey(const FoundKey& key);

} // namespace serverprofile
