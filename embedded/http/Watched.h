// A handler whose requests and replies a watcher sees.
#pragma once

#include "http/Message.h"

#include <functional>

namespace embedded::http {

/// Sees a reply before it is sent, and may put another source in the place of its `rest`.
using ReplyWatch = std::function<void(Reply& reply)>;

/// Calls `watch` with each request, then `handler`, and then, on the thread that made the reply,
/// what `watch` returned. Thread-safety: as `handler` and `watch`.
Handler watched(Handler handler, std::function<ReplyWatch(const Request&)> watch);

} // namespace embedded::http
