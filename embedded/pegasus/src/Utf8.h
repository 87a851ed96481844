// UTF-8 in and out of UTF-16 code units.
#pragma once

#include <Pegasus/Common/Char16.h>

#include <string>
#include <vector>

namespace Pegasus::utf8 {

/// Appends what `size` bytes of UTF-8 say to `units`. A code unit of a surrogate pair that stands
/// alone may come as three bytes. Throws an Exception that names the offset of the first byte that
/// is not UTF-8; `units` then holds what was read before it.
void decode(const char* bytes, Uint32 size, std::vector<Char16>& units);

/// The code units as UTF-8. One of a surrogate pair that stands alone becomes three bytes.
std::string encode(const Char16* units, Uint32 size);

} // namespace Pegasus::utf8
