// A handler with somebody who looks on.
#pragma once

#include "http/Message.h"

#include <functional>

namespace embedded::http {

/// Sees a reply before it is sent, and may put another source in the place of its `rest`.
using ReplyWatch = std::function<void(Reply& reply)>;

/// A handler that does what `handler` does. `watch` sees each request first; what it returns sees
/// the reply, on the thread that made it. Thread-safety: as `handler` and `watch`.
Handler watched(Handler handler, std::function<ReplyWatch(const Request&)> watch);

} // namespace embedded::http
