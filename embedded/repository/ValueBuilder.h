// Converts MOF constants to CIM values of a declared type.
#pragma once

#include "mof/Mof.h"

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>

#include <functional>
#include <string>

namespace embedded::repository {

/// What a value is for: its description in errors ("property Speed"), and its declared type.
struct ValueTarget {
    std::string description;
    Pegasus::CIMType type = Pegasus::CIMTYPE_STRING;
    bool isArray = false;
    Pegasus::Uint32 arraySize = 0; ///< 0: any number of elements
};

/// Says which path a reference constant (an alias or a string) stands for, or throws MofError.
using ReferenceReader = std::function<Pegasus::CIMObjectPath(const mof::Literal&)>;

/// NULL of the target's type.
Pegasus::CIMValue nullValue(const ValueTarget& target);

/// `value` as the target's type. `readReference` is called for references only; without it a
/// reference other than NULL is refused.
/// Throws MofError at the constant that does not fit.
Pegasus::CIMValue buildValue(const mof::Value& value, const ValueTarget& target,
                             const ReferenceReader& readReference = {});

} // namespace embedded::repository
