// Where a request ends, and for whom it is, must not be a matter of opinion: what one server on the
// way takes for a body, the next one may take for a request.
#pragma once

#include "http/Message.h"

#include <optional>
#include <string>

namespace embedded::http {

/// Why a request is not taken, and what its client is told.
struct Refusal {
    unsigned status;
    std::string reason; ///< of the status line
    std::string why;    ///< for the log
};

/// What is wrong with the fields of `request` that say how long its body is (RFC 9112 clause 6.3)
/// or name its host (clause 3.2). Bodies are taken with a Content-Length, or with "chunked" as
/// their only transfer coding. What Beast's parser refuses by itself does not come here: a
/// Content-Length that is no number, several that differ, and one beside "chunked".
std::optional<Refusal> framingFault(const Request& request);

} // namespace embedded::http
