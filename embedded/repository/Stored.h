// Instances as they are kept: each has its path and the values that it was given, and shares with
// others what is the same in all of them.
#pragma once

#include "repository/Ref.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace embedded::repository {

/// Role and target of each reference of an association.
using References = std::vector<std::pair<Pegasus::CIMName, Pegasus::CIMObjectPath>>;

/// What instances of one class have in common that give the same properties in the same order and
/// are written with the same qualifiers.
struct Shape : Counted<Shape> {
    struct Member {
        Pegasus::Uint32 property; ///< its place among the properties of the class
        bool given; ///< if not, it has the class's default and is marked as propagated

        bool operator==(const Member& x) const {
            return property == x.property && given == x.given;
        }
    };

    std::vector<Member> members; ///< in the order of the instance's properties
    std::string written;         ///< tells apart the qualifiers of the instances themselves

    // Places among `members`, in ascending order.

    std::vector<Pegasus::Uint32> given;
    std::vector<Pegasus::Uint32> references;

    /// An instance but for its path and the values that are given, with its qualifiers and without.
    Pegasus::CIMInstance whole, bare;
};

/// Never changed.
struct Stored : Counted<Stored> {
    Ref<Shape> shape;
    Pegasus::CIMObjectPath path;                 ///< class and keys
    std::unique_ptr<Pegasus::CIMValue[]> values; ///< one for each of shape->given

    /// Of a place among the shape's members.
    const Pegasus::CIMValue& valueAt(Pegasus::Uint32 place) const;
    /// Of a property; none if the instance has none of that name.
    std::optional<Pegasus::CIMValue> value(const Pegasus::CIMName& property) const;
    /// The caller's own copy.
    Pegasus::CIMInstance instance(bool withQualifiers) const;
    /// Those that have a value.
    References references() const;
};

} // namespace embedded::repository
