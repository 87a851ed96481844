// The log of cimhost, on standard error. Logging never waits for a reader: lines that are not read
// are dropped and counted.
#pragma once

#include <string>

namespace embedded::cimhost {

/// Sends spdlog's messages from `level` on (a name that spdlog knows) to standard error, each as
/// one line, even if a client has put line ends into it.
void setUpLog(const std::string& level);

/// Logs a warning that clients can cause as often as they like: ten a second of a kind are written,
/// the rest is counted. `kind` is a text of the program. Thread-safety: any thread.
void warnOften(const std::string& kind, const std::string& line);

/// Writes the lines of `text` to the log, together and without time and level; control characters
/// are escaped. Thread-safety: any thread.
void logText(const std::string& text);

/// Waits, for a second at most, until the log is written. The last call before the process ends.
void endLog() noexcept;

} // namespace embedded::cimhost
