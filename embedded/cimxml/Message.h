// CIM-XML messages (DSP0201) on CIM operations (DSP0200): one request document in, one reply
// document out. Knows nothing of HTTP but the three values that DSP0200 clause 6.3 wants compared
// with the document.
//
// Thread-safety: no state but the enumerations that are open; several threads may work on exchanges
// of their own at once.
#pragma once

#include "routing/CimOperations.h"
#include "routing/Enumerations.h"

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

/// A reply document, made piece by piece.
///
/// Thread-safety: one thread at a time; not always the same one.
class ReplyDocument {
  public:
    virtual ~ReplyDocument() = default;

    /// The modules whose providers are called for the first piece, which may take their time.
    virtual const std::vector<const routing::Module*>& modules() const = 0;
    /// Before the first piece: nobody is called, and the reply is CIM_ERR_FAILED with `why`.
    virtual void giveUp(const std::string& why) = 0;
    /// Appends the next piece to `out`, not much more than 64 KiB of it; false, with nothing
    /// appended, behind the end. What a call behind the first one throws leaves the document
    /// without an end.
    virtual bool next(std::string& out) = 0;
    /// Whether next() has nothing more.
    virtual bool ended() const = 0;
};

/// The reply to the request document `body`, for which `operations` plans what it asks for. The
/// first piece performs the operation, so all providers have answered before there is anything to
/// be sent. A CIM error is a reply like any other, and so is whatever goes wrong up to the first
/// piece. What is pulled is held in `enumerations`. Both must outlive the result. Throws
/// RequestRejected, nothing else of this room's.
std::shared_ptr<ReplyDocument> replyTo(const std::string& body, const Headers& headers,
                                       const routing::Caller& caller,
                                       routing::CimOperations& operations,
                                       routing::Enumerations& enumerations);

/// All of that reply.
std::string answer(const std::string& body, const Headers& headers, const routing::Caller& caller,
                   routing::CimOperations& operations, routing::Enumerations& enumerations);

} // namespace embedded::cimxml
