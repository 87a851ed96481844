// The header fields of a CIM-XML request (DSP0200 clause 6.2), read and checked.
#pragma once

#include "cimxml/Message.h"
#include "http/Message.h"

#include <string>

namespace embedded::cimxml {

/// The extension that an M-POST request declares in Man (RFC 2774 clause 4): the two digits that
/// its field names begin with, or nothing.
/// Throws RequestRejected for a prefix that is not two digits.
std::string extensionPrefix(const http::Request& request);

/// What the request's fields say about the operation. `prefix` as extensionPrefix() gave it: a
/// field is looked for with it, and then without. Throws RequestRejected for fields that
/// rule the request out; without a CIMError where DSP0200 has none.
Headers cimHeaders(const http::Request& request, const std::string& prefix);

} // namespace embedded::cimxml
