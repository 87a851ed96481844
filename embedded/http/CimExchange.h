// The HTTP side of CIM-XML (DSP0200 clause 6): which verbs, header fields and versions are
// accepted, and which status and CIMError answer the others. The document itself is cimxml's.
#pragma once

#include "cimxml/Message.h"
#include "http/Server.h"

#include <functional>
#include <string>

namespace embedded::http {

/// Turns a request document into a reply document; throws cimxml::RequestRejected.
using DocumentAnswer =
    std::function<std::string(const std::string& body, const cimxml::Headers& headers)>;

/// Answers one request whose document is `answer`'s to read. Throws what `answer` throws but for
/// cimxml::RequestRejected.
Reply exchange(const Request& request, const DocumentAnswer& answer);

/// Answers one CIM-XML request; to be used as an http::Handler. Thread-safe as `operations` is.
Reply exchange(const Request& request, host::CimOperations& operations);

} // namespace embedded::http
