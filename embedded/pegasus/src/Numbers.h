// Integers as object paths write them.
#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus::numbers {

/// Reads decimal digits without leading zeros, or hexadecimal ones behind 0x. False when it is
/// something else or does not fit.
bool parse(const String& text, Uint64& value);

/// Reads a sign and what parse(const String&, Uint64&) reads; without '-' the sign may be
/// missing.
bool parse(const String& text, Sint64& value);

/// Equal for texts that write the same integer; what is no integer is returned as it is.
String canonical(const String& text);

} // namespace Pegasus::numbers
