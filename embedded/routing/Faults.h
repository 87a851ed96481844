// Faults on demand: a provider's read-back fails or hangs instead of being answered.
#pragma once

#include "routing/CimOperations.h"

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMStatusCode.h>

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace embedded::routing {

struct Fault {
    enum class Kind {
        Fails,          ///< with `status` and `message`
        Hangs,          ///< for `delay`; then whatever else applies
        AnswersNothing, ///< an empty list, an uninitialised object; nothing is done
    };

    std::optional<OperationKind> operation; ///< empty: any
    Pegasus::CIMName className;             ///< null: any
    Kind kind = Kind::Fails;
    Pegasus::CIMStatusCode status = Pegasus::CIM_ERR_FAILED;
    std::string message;
    std::chrono::milliseconds delay{0};
};

/// The fault that `text`, OPERATION:CLASS=WHAT, asks for (faultHelp() says how it is spelt).
/// Throws std::invalid_argument, whose text says what is wrong and what is possible.
Fault readFault(const std::string& text);

/// How faults are spelt, as lines for the person who writes them.
std::string faultHelp();

/// Such as "enumerateInstances of CIM_Namespace fails with CIM_ERR_FAILED".
std::string describe(const Fault& fault);

/// Stands between a provider's handle and the server. Thread-safety: as `server`'s.
class FaultyReadBacks : public CimOperations {
  public:
    /// `server` must outlive this object.
    FaultyReadBacks(CimOperations& server, std::vector<Fault> faults)
        : _server(server), _faults(std::move(faults)) {}

    /// Performing the plan applies the faults for `operation` on its target() (ignoring case), in
    /// their order: waits for those that hang, until one throws its CIMException or says that there
    /// is no answer. Otherwise the server answers. The plan names no modules: nobody asks a
    /// read-back's for them.
    Plan plan(const Operation& operation) override;

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
    const std::vector<Fault> _faults;
};

} // namespace embedded::routing
