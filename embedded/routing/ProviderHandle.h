// The way back: what providers ask of the server that they run in.
#pragma once

#include "routing/CimOperations.h"

#include <embedding/CIMOMHandleRep.h>

namespace embedded::routing {

/// Stands behind a provider's CIMOMHandle, and asks `operations` on the calling thread. Messages
/// have no status name, which only replies over the wire have. The server unloads nothing while it
/// runs, so it ignores providers that forbid unloading.
///
/// A call gets CIM_ERR_FAILED at once if it would enter a module that waits for that call.
///
/// Thread-safety: several threads may ask at once, also a provider's own threads.
class ProviderHandle : public Pegasus::CIMOMHandleRep {
  public:
    explicit ProviderHandle(CimOperations& operations) : _operations(operations) {}

    Answer perform(const Operation& operation) override { return _operations.perform(operation); }

  private:
    CimOperations& _operations;
};

/// While it lives, every CIMOMHandle that a provider gets or makes leads to `operations`, which
/// must outlive it. There is one at a time in a process. REQUIRES: made before the first provider
/// is loaded.
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
