// Reads calls as operations, and writes what operations return.
#pragma once

#include "cimxml/Parameters.h"
#include "cimxml/Request.h"
#include "limits/Limits.h"
#include "routing/CimOperations.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace embedded::cimxml {

/// The parameters that only pull requests have.
struct Pulled {
    PullStep step = PullStep::None;
    std::string context;
    std::uint32_t maximum = 0; ///< objects in the reply
    std::chrono::seconds timeOut = limits::enumerationTime;
    bool continuesOnError = false;
    bool isFiltered = false;
};

/// An operation as a client wrote it.
struct Call {
    routing::Operation operation;
    bool objectIsClass = false; ///< ObjectName came as a CLASSNAME
    Pulled pulled;
};

/// Reads the IMETHODCALL of `request`; asks `operations` for classes that are needed to understand
/// it. Throws Pegasus::CIMException for errors that the client sees, RequestRejected if a parameter
/// is of the wrong kind.
Call readCall(const Request& request, const routing::Caller& caller,
              routing::CimOperations& operations);

/// Appends one thing of the answer to `call` as an element of an IRETURNVALUE. Throws
/// Pegasus::Exception if it cannot be written.
void appendAnswered(std::string& out, const routing::Answered& answered, const Call& call);

/// The same for the pulled answer to `operation`, with the whole path.
void appendPulled(std::string& out, const routing::Answered& answered,
                  const routing::Operation& operation);

/// Always throws a Pegasus::CIMException, since there are no method providers here; it says whether
/// the class has the method.
[[noreturn]] void answerExtrinsic(const Request& request, const routing::Caller& caller,
                                  routing::CimOperations& operations);

} // namespace embedded::cimxml
