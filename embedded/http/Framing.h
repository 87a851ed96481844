// Refuses requests whose end or host two servers could read differently: what a proxy takes for a
// body, the next server might take for a request.
#pragma once

#include "http/Message.h"

#include <optional>
#include <string>

namespace embedded::http {

/// Why the server refuses a request, and what it replies.
struct Refusal {
    unsigned status;
    std::string reason; ///< of the status line
    std::string why;    ///< for the log
};

/// Checks the fields of `request` that give the length of its body (RFC 9112 clause 6.3) or its
/// host (clause 3.2). A body needs a Content-Length, or "chunked" as its only transfer coding.
/// Beast's parser has refused before: a Content-Length that is no number, several different ones,
/// and one together with "chunked".
std::optional<Refusal> framingFault(const Request& request);

} // namespace embedded::http
