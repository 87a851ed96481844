// The header fields of a CIM-XML request (DSP0200 clause 6.2), read and checked.
#pragma once

#include "cimxml/Message.h"
#include "http/Server.h"

#include <stdexcept>
#include <string>

namespace embedded::http {

/// Thrown for a request that its header fields alone rule out. what() is for the client's reader
/// and may be empty, `cimError` too; then the reply is without the field.
class HeadersRejected : public std::runtime_error {
  public:
    HeadersRejected(unsigned status, std::string cimError, const std::string& detail)
        : std::runtime_error(detail), _status(status), _cimError(std::move(cimError)) {}
    unsigned status() const { return _status; }
    const std::string& cimError() const { return _cimError; }

  private:
    unsigned _status;
    std::string _cimError;
};

/// The extension that an M-POST request declares in Man (RFC 2774 clause 4): the two digits that
/// its field names begin with, or nothing.
/// Throws HeadersRejected for a prefix that is not two digits.
std::string extensionPrefix(const Request& request);

/// What the request's fields say about the operation. `prefix` as extensionPrefix() gave it.
/// Throws HeadersRejected.
cimxml::Headers cimHeaders(const Request& request, const std::string& prefix);

/// `text` with its %-escapes resolved; throws std::invalid_argument for one that is not two
/// hexadecimal digits.
std::string percentDecoded(const std::string& text);

/// `text` with everything escaped but the unreserved characters of RFC 3986 clause 2.3.
std::string percentEncoded(const std::string& text);

} // namespace embedded::http
