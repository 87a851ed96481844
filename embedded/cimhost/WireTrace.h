// Shows what goes over the wire.
#pragma once

#include "http/Message.h"

#include <filesystem>
#include <functional>
#include <string>

namespace embedded::cimhost {

/// A handler that calls `handler`, and writes every request and reply: to standard error if `where`
/// is "-", otherwise to files "<number>-request" and "<number>-reply" in the directory `where`,
/// which it creates. It writes a body in pieces as the pieces go out, on standard error as "reply,
/// continued, <number>". The lines of headers end in plain newlines. Fields that carry a password
/// are written without it.
///
/// Throws std::filesystem::filesystem_error if the directory cannot be made. If a file cannot be
/// written, `log` gets a line, and the request is served all the same.
/// Thread-safety: as `handler`.
http::Handler traced(http::Handler handler, const std::string& where,
                     const std::function<void(const std::string&)>& log);

} // namespace embedded::cimhost
