// Sets of named flags, as text.
#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {

struct FlagName {
    Uint32 bit;
    const char* name;
};

/// The names of the flags in `bits`, in the order of the table, separated by a space.
template <std::size_t count>
String flagNames(Uint32 bits, const FlagName (&table)[count]) {
    String text;
    for (const FlagName& flag : table) {
        if ((bits & flag.bit) == 0)
            continue;
        if (text.size() != 0)
            text.append(Char16(' '));
        text.append(String(flag.name));
    }
    return text;
}

} // namespace Pegasus
