// The inside of quoted literals (DSP0004, clause on string and character constants).
#pragma once

#include "mof/Source.h"

namespace embedded::mof {

/// The value of a string literal, given with its quotes; it stands at `start` in `source`.
/// Throws MofError at a bad escape.
std::string decodeString(std::string_view literal, const Source& source, const Position& start);

/// The same for a character literal, which must hold one character of the basic plane, because
/// a char16 is one UTF-16 unit.
std::string decodeCharacter(std::string_view literal, const Source& source, const Position& start);

} // namespace embedded::mof
