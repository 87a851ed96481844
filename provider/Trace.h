// The module's trace: one line on standard output for each event, always on.
//
// A line is composed first and written in one piece and flushed, so that lines of two threads
// never mix; the stream's own settings are neither used nor changed.
//
// Thread-safety: all functions may be called from several threads at once.
#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/String.h>

#include <string>

namespace serverprofile {

std::string traceText(const char* text); ///< a null pointer counts as an empty text
std::string traceText(const Pegasus::String& text);
std::string traceText(const Pegasus::CIMName& name);
std::string traceText(const Pegasus::CIMObjectPath& path);
std::string traceText(bool flag);              ///< "1" or "0"
std::string traceText(Pegasus::Sint32 number); ///< decimal
std::string traceText(Pegasus::Uint32 number); ///< decimal

/// Writes "ServerProfileProvider ", `line` and an end of line.
void writeTraceLine(const std::string& line);

/// Traces `message` followed by `values`, with nothing put between them.
template <class... Values>
void trace(const char* message, const Values&... values) {
    writeTraceLine((traceText(message) + ... + traceText(values)));
}

} // namespace serverprofile
