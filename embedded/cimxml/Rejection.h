// The rejections that most of this room throws (DSP0200 clause 6.3.3.2), and its usual error.
#pragma once

#include "cimxml/Message.h"
#include "embedding/Text.h"

#include <Pegasus/Common/Exception.h>

namespace embedded::cimxml {

/// The bytes are not an XML document.
[[noreturn]] inline void rejectNotWellFormed(const std::string& detail) {
    throw RequestRejected(400, "request-not-well-formed", detail);
}

/// An XML document, but not a CIM-XML request.
[[noreturn]] inline void rejectNotValid(const std::string& detail) {
    throw RequestRejected(400, "request-not-valid", detail);
}

/// A CIM-XML request with a part that has no meaning.
[[noreturn]] inline void throwInvalid(const std::string& message) {
    throw Pegasus::CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER,
                                Pegasus::embedding::fromUtf8(message));
}

} // namespace embedded::cimxml
