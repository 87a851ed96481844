// Applies faults to read-backs, between a provider's handle and the server.
#pragma once

#include "routing/CimOperations.h"
#include "routing/Faults.h"

#include <utility>

namespace embedded::routing {

/// Applies the faults of each operation, and then asks `server`, unless a fault says that there is
/// no answer.
///
/// Thread-safety: as `server`'s.
class FaultyReadBacks : public CimOperations {
  public:
    /// `server` must outlive this object.
    FaultyReadBacks(CimOperations& server, Faults faults)
        : _server(server), _faults(std::move(faults)) {}

    Plan plan(const Operation& operation) override {
        // A read-back's plan is not asked for its modules, which are not known yet.
        return {{}, [this, &operation] {
                    const bool answered = _faults.meet(operation) == Faults::Outcome::ServersAnswer;
                    return answered ? _server.perform(operation) : Answer();
                }};
    }

    /// Providers cannot ask these, so there are no faults for them.
    std::vector<Pegasus::CIMName> keyNames(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& className) override {
        return _server.keyNames(nameSpace, className);
    }
    bool hasNameSpace(const Pegasus::CIMNamespaceName& nameSpace) override {
        return _server.hasNameSpace(nameSpace);
    }

  private:
    CimOperations& _server;
    const Faults _faults;
};

} // namespace embedded::routing
