// Conversions between String and std::string.
#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace Pegasus::embedding {

/// `text` in UTF-8; a surrogate that stands alone becomes three bytes.
PEGASUS_COMMON_LINKAGE std::string utf8(const String& text);
inline std::string utf8(const CIMName& name) { return utf8(name.getString()); }
inline std::string utf8(const CIMNamespaceName& name) { return utf8(name.getString()); }

/// Appends what utf8() gives.
PEGASUS_COMMON_LINKAGE void appendUtf8(std::string& out, const String& text);

/// As the constructor of String, but takes an empty `text` whose data() is null, too.
PEGASUS_COMMON_LINKAGE String fromUtf8(std::string_view text);

/// `text` in UTF-8 with its ASCII letters in lower case: names of classes, properties and
/// namespaces are told apart by it (DSP0004: without regard to case).
PEGASUS_COMMON_LINKAGE std::string folded(const String& text);
inline std::string folded(const CIMName& name) { return folded(name.getString()); }

/// The same for texts that do not differ but in case, as long as this process lives.
PEGASUS_COMMON_LINKAGE std::uint64_t foldedHash(const String& text);

} // namespace Pegasus::embedding
