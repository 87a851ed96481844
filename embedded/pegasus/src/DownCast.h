#pragma once

#include "RepAccess.h"

namespace Pegasus {

/// The representation of a CIMObject or CIMConstObject as that of a class or instance. Throws
/// DynamicCastFailedException if it is none, or if there is none.
template <class Rep, class Handle>
std::shared_ptr<Rep> downCast(const Handle& object) {
    auto rep = std::dynamic_pointer_cast<Rep>(RepAccess::rep(object));
    if (!rep)
        throw DynamicCastFailedException();
    return rep;
}

} // namespace Pegasus
