// From a call to an operation, and from what the operation returns to elements.
#pragma once

#include "cimxml/Parameters.h"
#include "cimxml/Request.h"
#include "limits/Limits.h"
#include "routing/CimOperations.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace embedded::cimxml {

/// The parameters that only these requests have.
struct Pulled {
    PullStep step = PullStep::None;
    std::string context;
    std::uint32_t maximum = 0; ///< objects in the reply
    std::chrono::seconds timeOut = limits::enumerationTime;
    bool continuesOnError = false;
    bool isFiltered = false;
};

/// An operation as a client wrote it down.
struct Call {
    routing::Operation operation;
    bool objectIsClass = false; ///< ObjectName came as a CLASSNAME
    Pulled pulled;
};

/// Reads the IMETHODCALL of `request`; `operations` is asked for classes where the request cannot
/// be understood without. Throws Pegasus::CIMException for what the client is to see as an error,
/// RequestRejected when a parameter is of the wrong kind.
Call readCall(const Request& request, const routing::Caller& caller,
              routing::CimOperations& operations);

/// Appends one thing of the answer to `call` as it stands in an IRETURNVALUE. Throws
/// Pegasus::Exception when it cannot be written.
void appendAnswered(std::string& out, const routing::Answered& answered, const Call& call);

/// The same of the answer to `operation` that is pulled: with the whole path.
void appendPulled(std::string& out, const routing::Answered& answered,
                  const routing::Operation& operation);

/// There are no method providers here: always throws a Pegasus::CIMException, which tells a
/// method that the class has from one that it has not.
[[noreturn]] void answerExtrinsic(const Request& request, const routing::Caller& caller,
                                  routing::CimOperations& operations);

} // namespace embedded::cimxml
