// Requests and replies as bytes, where it is not a parser's work.
#pragma once

#include "http/Message.h"

#include <cstddef>
#include <ctime>
#include <string>
#include <string_view>

namespace embedded::http {

/// What the Connection field of a reply says; Silent leaves it out, which an HTTP/1.1 client
/// reads as "stays open".
enum class Persistence { Silent, KeepAlive, Close };

/// The header of `reply` with the empty line that ends it: Date when `date` is not empty, the
/// reply's fields with the names, order and values that they have, then how long the body is (its
/// length when that is not among the fields, or that it comes in chunks), then Connection.
/// Throws std::invalid_argument for a reason or field that would not stay on its line, and for a
/// content length beside a body that comes in pieces.
std::string wireHeader(const Reply& reply, Persistence persistence, std::string_view date = {});

/// The line with which a chunk of `size` bytes begins (RFC 9112 clause 7.1).
std::string chunkBegin(std::size_t size);

/// A reply without a body; `content-length: 0` says so.
Reply emptyReply(unsigned status, const std::string& reason, Fields fields = {});

/// `time` as the value of a Date field (IMF-fixdate, RFC 9110 clause 5.6.7): English and in GMT,
/// whatever the locale and the time zone.
std::string httpDate(std::time_t time);

/// What the exception that is being handled says. REQUIRES: called in a handler of exceptions.
std::string thrownText();

} // namespace embedded::http
