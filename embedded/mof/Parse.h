// Runs the generated parser for a Reading.
#pragma once

#include "mof/Source.h"

namespace embedded::mof {

class Reading;

/// Parses `text`, valid UTF-8 without NUL bytes, and hands every declaration and pragma to
/// `reading` as soon as it is whole. Throws MofError.
void parse(std::string_view text, const Source& source, Reading& reading);

} // namespace embedded::mof
