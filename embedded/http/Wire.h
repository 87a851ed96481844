// Requests and replies as bytes, where it is not a parser's work.
#pragma once

#include "http/Server.h"

#include <ctime>
#include <string>

namespace embedded::http {

/// What the Connection field of a reply says; Silent leaves it out, which an HTTP/1.1 client
/// reads as "stays open".
enum class Persistence { Silent, KeepAlive, Close };

/// The bytes of `reply`: its fields with the names, order and values that it has, then the content
/// length when it is not among them, then Connection. `withBody` false leaves the body out but
/// not its length, as a reply to HEAD wants it (RFC 9110 clause 9.3.2).
/// Throws std::invalid_argument for a reason or field that would not stay on its line.
std::string wireText(const Reply& reply, Persistence persistence, bool withBody = true);

/// A reply without a body; `content-length: 0` says so.
Reply emptyReply(unsigned status, const std::string& reason, Fields fields = {});

/// `time` as the value of a Date field (IMF-fixdate, RFC 9110 clause 5.6.7): English and in GMT,
/// whatever the locale and the time zone.
std::string httpDate(std::time_t time);

} // namespace embedded::http
