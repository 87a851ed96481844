// The call within a request, read as an operation.
#pragma once

#include "cimxml/Request.h"
#include "limits/Limits.h"
#include "routing/CimOperations.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace embedded::cimxml {

/// What a request does with a pulled enumeration (DSP0200 1.4 clause 5.3.2.24).
enum class PullStep { None, Open, Pull, Close };

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
/// it. Of the same names in a property list, it keeps the first.
///
/// Throws Pegasus::CIMException for errors that the client sees, such as a parameter that is
/// missing, unknown, given twice or has an illegal value, and RequestRejected for one of the wrong
/// kind.
Call readCall(const Request& request, const routing::Caller& caller,
              routing::CimOperations& operations);

} // namespace embedded::cimxml
