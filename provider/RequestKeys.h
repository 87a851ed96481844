// How an operation finds its row by the class, and its object by the key, of the request's path.
#pragma once

#include "provider/ServerProfileProvider.h"

#include <cstddef>

namespace serverprofile {

/// The first row of `rows` whose className is `className` (case ignored), or nullptr.
template <class Row, std::size_t count>
const Row* findRow(const Row (&rows)[count], const Pegasus::CIMName& className) {
    for (const Row& row : rows) {
        if (className == row.className) {
            return &row;
        }
    }
    return nullptr;
}

/// The key binding that names the object of a request.
struct FoundKey {
    bool accepted = false;
    Pegasus::String value; ///< of the accepted binding, else of the last one that was tried
};

/// The first key binding of `path` that names an object of its class (see _checkKey).
FoundKey findKey(ServerProfileProvider& provider, const Pegasus::CIMObjectPath& path);

/// Complains on standard output and throws CIMInvalidParameterException when `key` was not
/// accepted.
void requireKey(const FoundKey& key);

} // namespace serverprofile
