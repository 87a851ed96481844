// Read-backs that go wrong: put between a provider's handle and the server.
#pragma once

#include "routing/CimOperations.h"
#include "routing/Faults.h"

#include <utility>

namespace embedded::routing {

/// Each operation suffers its faults, then is `server`'s to answer, unless the faults say that
/// there is no answer.
///
/// Thread-safety: as `server`'s.
class FaultyReadBacks : public CimOperations {
  public:
    /// `server` must outlive this object.
    FaultyReadBacks(CimOperations& server, Faults faults)
        : _server(server), _faults(std::move(faults)) {}

    Plan plan(const Operation& operation) override {
        // The modules are not known yet, and nobody asks a read-back's plan for them.
        return {{}, [this, &operation] {
                    const bool answered = _faults.meet(operation) == Faults::Outcome::ServersAnswer;
                    return answered ? _server.perform(operation) : Answer();
                }};
    }

    /// Nobody reads these back, so they suffer nothing.
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
