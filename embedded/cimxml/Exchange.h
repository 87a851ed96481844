// The HTTP side of CIM-XML (DSP0200 clause 6): which verbs, header fields and versions are
// accepted, and which status and CIMError answer the others. The document itself is Message.h's.
#pragma once

#include "cimxml/Message.h"
#include "http/Message.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace embedded::cimxml {

/// Reads a request document and answers it; throws RequestRejected.
using DocumentAnswer =
    std::function<std::shared_ptr<ReplyDocument>(const std::string& body, const Headers& headers)>;

/// Answers one request whose document is `answer`'s to read: at once, or with Work for a reply that
/// enters modules, in the lanes whose numbers are those of the modules; if it waits there for too
/// long, the client is told which of them is not answering. A long document goes out in pieces.
/// Throws what `answer` throws but for RequestRejected.
http::Answer exchange(const http::Request& request, const DocumentAnswer& answer);

/// Answers one CIM-XML request of `caller`; what an http::Handler is made of. A long request is
/// read on a worker, and answered there, in the lanes `longReading` besides those of the modules.
/// `operations` must be thread-safe; it and `enumerations` must outlive the replies.
http::Answer exchange(http::Request&& request, const routing::Caller& caller,
                      routing::CimOperations& operations, routing::Enumerations& enumerations,
                      std::vector<unsigned> longReading = {});

} // namespace embedded::cimxml
