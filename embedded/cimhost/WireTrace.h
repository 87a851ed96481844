// What goes over the wire, shown to whoever looks for the reason of an answer.
#pragma once

#include "http/Message.h"

#include <filesystem>
#include <functional>
#include <string>

namespace embedded::cimhost {

/// A handler that does what `handler` does and writes every request and reply: with `where` "-"
/// to standard error, otherwise to a pair of files "<number>-request", "<number>-reply" in the
/// directory `where`, which is created. A body that is sent in pieces is written piece by piece, as
/// it goes out: on standard error as "reply, continued, <number>". Line ends of the headers are
/// plain newlines. Field values that carry a password are left out.
///
/// Throws std::filesystem::filesystem_error when the directory cannot be made. A file that cannot
/// be written is told to `log` and the request served all the same.
/// Thread-safety: as `handler`.
http::Handler traced(http::Handler handler, const std::string& where,
                     const std::function<void(const std::string&)>& log);

} // namespace embedded::cimhost
