// How an operation finds its row by the class, and its object by the key, of the request's path.
#pragma once

#include "provider/ServerProfileProvider.h"

#include <cstddef>

#include <strings.h>

namespace serverprofile {

/// The text of `name`, to be compared with literals: a name made of each would cost more.
inline Pegasus::CString plain(const Pegasus::CIMName& name) {
    return name.getString().getCString();
}

/// The first row of `rows` whose className is `className` (case ignored), or nullptr.
template <class Row, std::size_t count>
const Row* findRow(const Row (&rows)[count], const char* className) {
    for (const Row& row : rows)
        if (::strcasecmp(className, row.className) == 0)
            return &row;
    return nullptr;
}

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
