// MOF's type names against CIM types, and the small conversions that every file here needs.
#pragma once

#include "embedding/Text.h"
#include "mof/Mof.h"
#include "text/Ascii.h"

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>

#include <cstdint>
#include <string>
#include <type_traits>

namespace embedded::repository {

/// What the find...() members of classes and instances return for a name that is not there: the
/// library's PEG_NOT_FOUND, whose macro compiles within namespace Pegasus only.
constexpr auto noIndex = static_cast<Pegasus::Uint32>(-1);

/// The UTF-8 text of `value`: a text, a name or a number.
template <class T>
std::string toText(const T& value) {
    if constexpr (std::is_arithmetic_v<T>)
        return std::to_string(value);
    else if constexpr (std::is_convertible_v<T, std::string>)
        return value;
    else if constexpr (std::is_same_v<T, Pegasus::CIMNamespaceName>)
        return Pegasus::embedding::utf8(value.getString());
    else
        return Pegasus::embedding::utf8(value);
}

/// Throws MofError at `where`. Its message is the texts of `parts`, one after the other.
template <class... Parts>
[[noreturn]] void refuse(const mof::Location& where, const Parts&... parts) {
    throw mof::MofError(where, (toText(parts) + ...));
}

/// CIM does not tell names apart by case (DSP0004): the form in which to look them up.
inline std::string folded(const std::string& name) { return text::lowered(name); }
using Pegasus::embedding::folded;
using Pegasus::embedding::foldedHash;

/// The CIM type that MOF spells `name` in lower case ("ref" for references). Throws MofError at
/// `where` for an unknown name.
Pegasus::CIMType cimTypeAt(const std::string& name, const mof::Location& where);

/// The CIM name that `text` spells; throws MofError at `where` if it is not a legal one.
Pegasus::CIMName cimNameAt(const std::string& text, const mof::Location& where);

} // namespace embedded::repository
