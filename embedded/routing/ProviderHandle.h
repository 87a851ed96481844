// The way back: what providers ask of the server that they run in.
#pragma once

#include "routing/CimOperations.h"

#include <embedding/CIMOMHandleRep.h>

namespace embedded::routing {

/// What stands behind a provider's CIMOMHandle: `operations`, asked on the calling thread.
/// Messages carry no status name, as no wire is between. The server unloads nothing while it runs,
/// so providers need not forbid it.
///
/// A call that would enter a module that waits for it gets CIM_ERR_FAILED at once.
///
/// Thread-safety: may be asked from several threads at once, threads of a provider's own among
/// them.
class ProviderHandle : public Pegasus::CIMOMHandleRep {
  public:
    explicit ProviderHandle(CimOperations& operations) : _operations(operations) {}

    Answer perform(const Operation& operation) override { return _operations.perform(operation); }

  private:
    CimOperations& _operations;
};

/// While it lives, every CIMOMHandle that a provider gets or makes leads to `operations`. One at a
/// time in a process. REQUIRES: made before the first provider is loaded; outlived by
/// `operations`.
class ProviderHandles {
  public:
    explicit ProviderHandles(CimOperations& operations) {
        Pegasus::embedding::setHandleFactory(
            [&operations] { return std::make_shared<ProviderHandle>(operations); });
    }
    ~ProviderHandles() { Pegasus::embedding::setHandleFactory({}); }
    ProviderHandles(const ProviderHandles&) = delete;
    ProviderHandles& operator=(const ProviderHandles&) = delete;
};

} // namespace embedded::routing
