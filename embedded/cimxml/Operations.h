// From a call to an operation, and from what the operation returns to elements.
#pragma once

#include "cimxml/Request.h"
#include "cimxml/Writer.h"
#include "host/CimOperations.h"

#include <string>

namespace embedded::cimxml {

/// An operation as a client wrote it down.
struct Call {
    host::Operation operation;
    bool objectIsClass = false; ///< ObjectName came as a CLASSNAME
};

/// Reads the IMETHODCALL of `request`; `operations` is asked for classes where the request cannot
/// be understood without. Throws Pegasus::CIMException for what the client is to see as an error,
/// RequestRejected when a parameter is of the wrong kind.
Call readCall(const Request& request, const host::Caller& caller, host::CimOperations& operations);

/// Appends one thing of the answer to `call` as it stands in an IRETURNVALUE. Throws
/// Pegasus::Exception when it cannot be written.
void appendAnswered(std::string& out, const host::Answered& answered, const Call& call);

/// There are no method providers here: always throws a Pegasus::CIMException, which tells a
/// method that the class has from one that it has not.
[[noreturn]] void answerExtrinsic(const Request& request, const host::Caller& caller,
                                  host::CimOperations& operations);

} // namespace embedded::cimxml
