// From a call to an operation, and from what it returns to the content of the response.
#pragma once

#include "cimxml/Request.h"
#include "host/CimOperations.h"

#include <string>

namespace embedded::cimxml {

/// Has `operations` answer the call in `request`; returns what the IMETHODRESPONSE holds. Throws
/// Pegasus::CIMException for what the client is to see as an error, Pegasus::Exception when an
/// object cannot be written, RequestRejected when a parameter is of the wrong kind.
std::string answerIntrinsic(const Request& request, const host::Caller& caller,
                            host::CimOperations& operations);

/// There are no method providers here: always throws a Pegasus::CIMException, which tells a
/// method that the class has from one that it has not.
[[noreturn]] void answerExtrinsic(const Request& request, const host::Caller& caller,
                                  host::CimOperations& operations);

} // namespace embedded::cimxml
