// The log of cimhost, on standard error. Nobody who logs waits: what is not read is dropped and
// counted.
#pragma once

#include <string>

namespace embedded::cimhost {

/// Sends what spdlog gets, from `level` on (a name that spdlog knows), to standard error: a line
/// each, whatever a client has put into it.
void setUpLog(const std::string& level);

/// A warning of a kind that clients can cause as often as they like: ten a second are written, the
/// rest counted. `kind` is a text of the program. Thread-safety: any thread.
void warnOften(const std::string& kind, const std::string& line);

/// Writes the lines of `text`, as they are but for control characters, together among those of the
/// log. Thread-safety: any thread.
void logText(const std::string& text);

/// Lets what is logged be written, for a second at most. The last thing before the process ends.
void endLog() noexcept;

} // namespace embedded::cimhost
