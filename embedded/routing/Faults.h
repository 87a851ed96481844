// Faults on demand: a provider's read-back fails or hangs instead of being answered.
#pragma once

#include "routing/CimOperations.h"

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMStatusCode.h>

#include <chrono>
#include <optional>
#include <string>
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

/// The faults that are active. Thread-safety: meet() may run on several threads at once.
class Faults {
  public:
    enum class Outcome { ServersAnswer, NoAnswer };

    explicit Faults(std::vector<Fault> faults) : _faults(std::move(faults)) {}

    /// Applies the faults for `operation` on its target() (ignoring case), in their order: waits
    /// for those that hang, until one throws its CIMException or says that there is no answer.
    Outcome meet(const Operation& operation) const;

  private:
    const std::vector<Fault> _faults;
};

} // namespace embedded::routing
