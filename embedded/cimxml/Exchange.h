// The HTTP side of CIM-XML (DSP0200 clause 6): which verbs, header fields and versions are
// accepted, and which status and CIMError answer the others. The document itself is Message.h's.
#pragma once

#include "cimxml/Message.h"
#include "http/Message.h"

#include <functional>
#include <string>

namespace embedded::cimxml {

/// Turns a request document into a reply document; throws RequestRejected.
using DocumentAnswer = std::function<std::string(const std::string& body, const Headers& headers)>;

/// Answers one request whose document is `answer`'s to read. Throws what `answer` throws but for
/// RequestRejected.
http::Reply exchange(const http::Request& request, const DocumentAnswer& answer);

/// Answers one CIM-XML request; to be used as an http::Handler. `operations` is called by the Work
/// that is returned, and thread-safe.
http::Answer exchange(http::Request&& request, host::CimOperations& operations);

} // namespace embedded::cimxml
