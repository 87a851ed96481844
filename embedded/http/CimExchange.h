// The HTTP side of CIM-XML (DSP0200 clause 6): which verbs, header fields and versions are
// accepted, and which status and CIMError answer the others. The document itself is cimxml's.
#pragma once

#include "cimxml/Message.h"
#include "http/Server.h"

namespace embedded::http {

/// Answers one CIM-XML request; to be used as an http::Handler. Thread-safe as `operations` is.
Reply exchange(const Request& request, host::CimOperations& operations);

} // namespace embedded::http
