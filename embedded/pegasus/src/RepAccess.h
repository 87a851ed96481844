// From the handles of the object model to what they share.
#pragma once

#include <Pegasus/Common/Exception.h>

#include <memory>
#include <utility>

namespace Pegasus {

/// The one friend of the handles (CIMProperty, CIMConstProperty, ...), for the others of them.
class RepAccess {
  public:
    template <class Handle>
    static auto& rep(Handle& handle) {
        return handle._rep;
    }

    template <class Handle, class Rep>
    static Handle make(std::shared_ptr<Rep> rep) {
        Handle handle;
        handle._rep = std::move(rep);
        return handle;
    }
};

/// What stands behind a handle. Throws UninitializedObjectException if nothing does.
template <class Rep>
Rep& initialized(const std::shared_ptr<Rep>& rep) {
    if (!rep)
        throw UninitializedObjectException();
    return *rep;
}

/// What stands behind an argument, which has to be initialized, too.
template <class Handle>
auto& repOf(Handle& handle) {
    return initialized(RepAccess::rep(handle));
}

} // namespace Pegasus
