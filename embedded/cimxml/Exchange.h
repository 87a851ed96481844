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

/// Answers one request, whose document `answer` reads: at once, or, if the reply enters modules,
/// with Work in the lanes that have the numbers of the modules. If the Work waits too long, the
/// client is told which module is not answering. A long document is sent in pieces. Throws what
/// `answer` throws, but for RequestRejected.
http::Answer exchange(const http::Request& request, const DocumentAnswer& answer);

/// Answers one CIM-XML request of `caller`, for an http::Handler. A worker reads and answers a long
/// request, in the lanes `longReading` besides those of the modules. `operations` must be
/// thread-safe; it and `enumerations` must outlive the replies.
http::Answer exchange(http::Request&& request, const routing::Caller& caller,
                      routing::CimOperations& operations, routing::Enumerations& enumerations,
                      std::vector<unsigned> longReading = {});

} // namespace embedded::cimxml
