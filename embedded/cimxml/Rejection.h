// The two rejections that most of this room throws (DSP0200 clause 6.3.3.2).
#pragma once

#include "cimxml/Message.h"

namespace embedded::cimxml {

/// The bytes are not an XML document.
[[noreturn]] inline void rejectNotWellFormed(const std::string& detail) {
    throw RequestRejected(400, "request-not-well-formed", detail);
}

/// An XML document, but not a CIM-XML request.
[[noreturn]] inline void rejectNotValid(const std::string& detail) {
    throw RequestRejected(400, "request-not-valid", detail);
}

} // namespace embedded::cimxml
