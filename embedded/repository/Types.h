// MOF's type names against CIM types, and the small conversions that every file here needs.
#pragma once

#include "embedding/Text.h"
#include "mof/Mof.h"
#include "text/Ascii.h"

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>

#include <cstdint>
#include <string>

namespace embedded::repository {

/// What the find...() members of classes and instances return for a name that is not there: the
/// library's PEG_NOT_FOUND, whose macro compiles within namespace Pegasus only.
constexpr auto noIndex = static_cast<Pegasus::Uint32>(-1);

/// The UTF-8 text of `value`.
inline std::string toText(const Pegasus::String& value) {
    return Pegasus::embedding::utf8(value);
}
inline std::string toText(const Pegasus::CIMName& name) {
    return Pegasus::embedding::utf8(name);
}

/// CIM does not tell names apart by case (DSP0004): the form in which to look them up.
inline std::string folded(const std::string& name) {
    return text::lowered(name);
}
using Pegasus::embedding::folded;
using Pegasus::embedding::foldedHash;

/// The CIM type that MOF spells `name` in lower case ("ref" for references). Throws MofError at
/// `where` for an unknown name.
Pegasus::CIMType cimTypeAt(const std::string& name, const mof::Location& where);

/// The CIM name that `text` spells; throws MofError at `where` if it is not a legal one.
Pegasus::CIMName cimNameAt(const std::string& text, const mof::Location& where);

} // namespace embedded::repository
