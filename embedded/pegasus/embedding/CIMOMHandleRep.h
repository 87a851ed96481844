// What stands behind a CIMOMHandle: the interface by which a program gives the provider library its
// server. Providers never see this header; servers and tests implement it.
#pragma once

#include "embedding/Operation.h"

#include <Pegasus/Common/Linkage.h>

#include <functional>
#include <memory>

namespace Pegasus {

/// A server, as its providers see it.
///
/// Thread-safety: one object may be called from several threads at once.
class PEGASUS_COMMON_LINKAGE CIMOMHandleRep {
  public:
    virtual ~CIMOMHandleRep() = default;

    /// Throws CIMException; CIM_ERR_NOT_SUPPORTED for an operation that the server does not offer.
    /// This definition always does, so that a server or test overrides only what it answers.
    /// `operation` need not outlive the call; the caller drains the answer before the next call.
    virtual embedding::Answer perform(const embedding::Operation& operation);

    /// For a server that unloads providers; these definitions do nothing.
    virtual void disallowProviderUnload();
    virtual void allowProviderUnload();
};

namespace embedding {

/// From now on, `factory` makes the server behind every default-constructed CIMOMHandle (copies of
/// a handle share it). There is one factory in the process; an empty function removes it. Without a
/// factory, every operation of such a handle throws CIMException CIM_ERR_FAILED "no CIM server in
/// this process", but for those about unloading, which do nothing.
///
/// Thread-safety: to be set before the first provider is loaded; then only read.
PEGASUS_COMMON_LINKAGE void
setHandleFactory(std::function<std::shared_ptr<CIMOMHandleRep>()> factory);

/// Throws CIM_ERR_NOT_SUPPORTED: this host does not offer `operation`.
[[noreturn]] PEGASUS_COMMON_LINKAGE void refuseOperation(const char* operation);

} // namespace embedding
} // namespace Pegasus
