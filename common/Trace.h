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

#include <cstddef>
#include <string>
#include <string_view>

namespace serverprofile {

/// Composes one line of the trace, which begins with "ServerProfileProvider ". Nearly all lines are
/// short enough for the object's own memory.
///
/// Thread-safety: one thread for an object.
class TraceLine {
  public:
    TraceLine() { append("ServerProfileProvider "); }

    void append(std::string_view text);
    void append(const char* text); ///< a null pointer counts as an empty text
    void append(const Pegasus::String& text);
    void append(const Pegasus::CIMName& name);
    void append(const Pegasus::CIMObjectPath& path);
    void append(bool flag);              ///< "1" or "0"
    void append(Pegasus::Sint32 number); ///< decimal
    void append(Pegasus::Uint32 number); ///< decimal

    /// Writes the line and its end.
    void write();

  private:
    std::string_view text() const;

    char _short[256];
    std::size_t _size = 0; ///< of what _short holds
    std::string _long;     ///< all of it, once it does not fit there
};

/// Traces one line: all of `values`, without separators.
template <class... Values>
void trace(const Values&... values) {
    TraceLine line;
    (line.append(values), ...);
    line.write();
}

} // namespace serverprofile
