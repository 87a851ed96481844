// Turns a request's filter into bits, one for each association class that it selects.
#pragma once

#include "common/Trace.h"

#include <cstddef>

#include <strings.h>

namespace serverprofile {

// Texts to be compared with literals: a name made of each would cost more.
inline Pegasus::CString plain(const Pegasus::String& text) { return text.getCString(); }
inline Pegasus::CString plain(const Pegasus::CIMName& name) { return plain(name.getString()); }

struct SelectionRow {
    const char* associationClass;
    int bit;
};

/// The bit of the first row named `filter` (case ignored); `all` for an empty filter or none; 0 for
/// any other name, which selects nothing and is no error.
template <std::size_t count>
int select(const SelectionRow (&rows)[count], const char* filter, int all) {
    if (filter == nullptr || *filter == '\0')
        return all;
    for (const SelectionRow& row : rows)
        if (::strcasecmp(filter, row.associationClass) == 0)
            return row.bit;
    return 0;
}

/// select(), tracing the bits when there is anything to select.
template <std::size_t count>
int selectTraced(const SelectionRow (&rows)[count], const char* filter, int all) {
    const int bits = select(rows, filter, all);
    if (bits != 0)
        trace(" Quil flag is ", bits);
    return bits;
}

/// The same, tracing the source's key value too.
template <std::size_t count>
int selectTraced(const SelectionRow (&rows)[count], const char* filter, int all,
                 const Pegasus::String& keyValue) {
    const int bits = selectTraced(rows, filter, all);
    if (bits != 0)
        trace(" Quil keyValue is ", keyValue);
    return bits;
}

/// Whether the result class given by the client accepts `className`: it is that name, or empty.
inline bool takes(const char* resultClass, const char* className) {
    return resultClass != nullptr &&
           (*resultClass == '\0' || ::strcasecmp(resultClass, className) == 0);
}

} // namespace serverprofile
