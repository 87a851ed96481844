// Answers a CIM-XML request document (DSP0201) with a reply document, by CIM operations (DSP0200).
// Knows nothing of HTTP but the three values that DSP0200 clause 6.3 compares with the document.
//
// Thread-safety: there is no state but the open enumerations; several threads may work at once.
#pragma once

#include "cimxml/Document.h"
#include "routing/CimOperations.h"
#include "routing/Enumerations.h"

#include <memory>
#include <string>
#include <vector>

namespace embedded::cimxml {

/// The CIM header fields of the request, decoded. An absent CIMProtocolVersion is "1.0".
struct Headers {
    std::string method;                  ///< CIMMethod
    std::string object;                  ///< CIMObject, %-escapes resolved
    std::string protocolVersion = "1.0"; ///< CIMProtocolVersion
};

/// A reply document, made piece by piece.
///
/// Thread-safety: one thread at a time; not always the same one.
class ReplyDocument {
  public:
    virtual ~ReplyDocument() = default;

    /// The modules whose providers make the first piece, which may take long.
    virtual const std::vector<const routing::Module*>& modules() const = 0;
    /// Before the first piece: makes the reply CIM_ERR_FAILED with `why`, without a call of
    /// modules.
    virtual void giveUp(const std::string& why) = 0;
    /// Appends the next piece, not much more than 64 KiB, to `out`; returns false, with nothing
    /// appended, at the end. If a later call than the first one throws, the document stays
    /// incomplete.
    virtual bool next(std::string& out) = 0;
    /// Whether next() has nothing more.
    virtual bool ended() const = 0;
};

/// The reply to the request document `body`. The first piece performs the operation, so all
/// providers have answered before anything is sent. All errors up to then, CIM errors included,
/// become replies. `enumerations` holds what is pulled. It and `operations` must outlive the
/// result. Throws RequestRejected.
std::shared_ptr<ReplyDocument> replyTo(const std::string& body, const Headers& headers,
                                       const routing::Caller& caller,
                                       routing::CimOperations& operations,
                                       routing::Enumerations& enumerations);

} // namespace embedded::cimxml
