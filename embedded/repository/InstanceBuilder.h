// Instances that are complete: every property of the class, and the path.
#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>

#include <functional>
#include <optional>
#include <vector>

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

/// `given` are the properties that `source` has values for. As OpenPegasus does it, those that come
/// from the class stand before them, in the class's order and marked as propagated, and so are the
/// qualifiers that the class hands down to subclasses.
Pegasus::CIMInstance buildInstance(const Pegasus::CIMConstClass& cimClass,
                                   const std::vector<Pegasus::CIMName>& given,
                                   const ValueSource& source);

} // namespace embedded::repository
