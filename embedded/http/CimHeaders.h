// The header fields of a CIM-XML request (DSP0200 clause 6.2), read and checked.
#pragma once

#include "cimxml/Message.h"
#include "http/Server.h"

#include <string>

namespace embedded::http {

/// The extension that an M-POST request declares in Man (RFC 2774 clause 4): the two digits that
/// its field names begin with, or nothing.
/// Throws cimxml::RequestRejected for a prefix that is not two digits.
std::string extensionPrefix(const Request& request);

/// What the request's fields say about the operation. `prefix` as extensionPrefix() gave it: a
/// field is looked for with it, and then without. Throws cimxml::RequestRejected for fields that
/// rule the request out; without a CIMError where DSP0200 has none.
cimxml::Headers cimHeaders(const Request& request, const std::string& prefix);

/// `text` with its %-escapes resolved; throws std::invalid_argument for one that is not two
/// hexadecimal digits.
std::string percentDecoded(const std::string& text);

/// `text` with everything escaped but the unreserved characters of RFC 3986 clause 2.3.
std::string percentEncoded(const std::string& text);

} // namespace embedded::http
