// CIM-XML messages (DSP0201) on CIM operations (DSP0200): one request document in, one reply
// document out. Knows nothing of HTTP but the three values that DSP0200 clause 6.3 wants compared
// with the document.
//
// Thread-safety: no state; answer() may run on several threads at once.
#pragma once

#include "host/CimOperations.h"

#include <stdexcept>
#include <string>

namespace embedded::cimxml {

/// The CIM header fields of the request, decoded. An absent CIMProtocolVersion is "1.0".
struct Headers {
    std::string method;                  ///< CIMMethod
    std::string object;                  ///< CIMObject, %-escapes resolved
    std::string protocolVersion = "1.0"; ///< CIMProtocolVersion
};

/// Thrown for a document that gets no CIM-XML reply but an HTTP status and a CIMError header
/// (DSP0200 clause 6.3.3.2): `status` 400 or 501, `cimError` such as "request-not-well-formed".
class RequestRejected : public std::runtime_error {
  public:
    RequestRejected(unsigned status, std::string cimError, const std::string& detail)
        : std::runtime_error(detail), _status(status), _cimError(std::move(cimError)) {}
    unsigned status() const { return _status; }
    const std::string& cimError() const { return _cimError; }

  private:
    unsigned _status;
    std::string _cimError;
};

/// Reads the request document `body`, has `operations` answer it, and returns the reply document.
/// A CIM error is a reply like any other. Throws RequestRejected, nothing else of this module's.
std::string answer(const std::string& body, const Headers& headers, const host::Caller& caller,
                   host::CimOperations& operations);

} // namespace embedded::cimxml
