// Replies as bytes.
#pragma once

#include "http/Message.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace embedded::http {

/// What the Connection field of a reply says; Silent leaves it out, which an HTTP/1.1 client
/// reads as "stays open".
enum class Persistence { Silent, KeepAlive, Close };

/// The header of `reply` with the empty line that ends it: Date unless `date` is empty, the reply's
/// fields as they are, Content-Length (unless it is among the fields) or Transfer-Encoding, then
/// Connection. Throws std::invalid_argument for a reason or field that contains a line end, and for
/// a content length of a body in pieces.
std::string wireHeader(const Reply& reply, Persistence persistence, std::string_view date = {});

/// The first line of a chunk of `size` bytes (RFC 9112 clause 7.1).
std::string chunkBegin(std::size_t size);

/// A reply without a body; `content-length: 0` says so.
Reply emptyReply(unsigned status, const std::string& reason, Fields fields = {});

/// HOST:PORT as a URL has it (RFC 3986 clause 3.2): an IPv6 address stands in brackets.
std::string authority(const std::string& host, std::uint16_t port);

/// `time` as the value of a Date field (IMF-fixdate, RFC 9110 clause 5.6.7): English and in GMT,
/// whatever the locale and the time zone.
std::string httpDate(std::time_t time);

/// The text of the exception that is being handled. REQUIRES: called within a catch clause.
std::string thrownText();

} // namespace embedded::http
