// Instances that are complete: every property of the class in the class's order, and the path.
#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>

#include <functional>
#include <optional>

namespace embedded::repository {

/// Tells the value that has been given for a property of the class; none: the class's default
/// goes in. The value must be of the property's type and array size.
using ValueSource =
    std::function<std::optional<Pegasus::CIMValue>(const Pegasus::CIMConstProperty& declared)>;

/// Thrown where a key has neither a value nor a default.
struct MissingKey {
    Pegasus::CIMName property;
};

/// Class and keys, without host and namespace. Asks `source` for the keys only.
Pegasus::CIMObjectPath buildPath(const Pegasus::CIMConstClass& cimClass, const ValueSource& source);

/// Properties that come from the class are marked as propagated. Its qualifiers stay with it.
Pegasus::CIMInstance buildInstance(const Pegasus::CIMConstClass& cimClass,
                                   const ValueSource& source);

} // namespace embedded::repository
