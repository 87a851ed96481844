// CIM-XML messages (DSP0201) on CIM operations (DSP0200): one request document in, one reply
// document out. Knows nothing of HTTP but the three values that DSP0200 clause 6.3 wants compared
// with the document.
//
// Thread-safety: no state; several threads may work on exchanges of their own at once.
#pragma once

#include "host/CimOperations.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

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

/// One request and its reply. A CIM error is a reply like any other.
///
/// Thread-safety: one thread at a time; not always the same one.
class Exchange {
  public:
    /// Reads the request document `body` and has `operations`, which must outlive this object,
    /// plan what it asks for. Throws RequestRejected, nothing else of this module's.
    Exchange(const std::string& body, const Headers& headers, const host::Caller& caller,
             host::CimOperations& operations);
    ~Exchange();
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    /// Whether the answer takes calls of providers, which may take their time.
    bool entersModules() const;

    /// Appends the next piece of the reply document to `out`, at least one object and no more than
    /// one above 64 KiB; false, with nothing appended, behind the end. The first call performs the
    /// operation, so all providers have answered before the first piece is there. Whatever goes
    /// wrong up to the first piece becomes an error reply; what a later call throws leaves the
    /// reply without an end.
    bool next(std::string& out);
    /// Whether next() has nothing more.
    bool ended() const;

  private:
    class State;
    std::unique_ptr<State> _state;
};

/// The whole reply to a request. Throws as the constructor of Exchange.
std::string answer(const std::string& body, const Headers& headers, const host::Caller& caller,
                   host::CimOperations& operations);

} // namespace embedded::cimxml
