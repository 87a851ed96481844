// A class as it stands in its namespace: what it declares, and, shared with its superclass, what it
// inherits. Nothing is copied from level to level.
#pragma once

#include "repository/NamedList.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMPropertyList.h>

namespace embedded::repository {

/// Never changed once it is in a namespace, where it stays as long as the namespace.
struct ClassNode : Counted<ClassNode> {
    /// A property or method as the declaring class has it: this class, or the nearest superclass
    /// that declares it.
    template <class Declared>
    struct Member {
        Declared declared;
        const ClassNode* home; ///< the class that declares it

        const Pegasus::CIMName& getName() const { return declared.getName(); }
    };
    using Property = Member<Pegasus::CIMConstProperty>;
    using Method = Member<Pegasus::CIMConstMethod>;

    /// An empty class, or, unless `above` is null, a subclass of `above` with all of its members.
    ClassNode(const Pegasus::CIMName& className, const ClassNode* above, std::uint64_t place);

    const Pegasus::CIMName& name() const { return head.getClassName(); }
    /// Whether the class is `base` or is derived from it.
    bool isA(const ClassNode& base) const;

    // These add a member that the class declares, in place of the one that it overrides.

    void declare(const Pegasus::CIMProperty& property);
    void declare(const Pegasus::CIMMethod& method);

    const ClassNode* const superclass; ///< null for a root
    const std::uint64_t number;        ///< how many classes of the namespace came before it
    Pegasus::CIMClass head;            ///< names and qualifiers, those handed down too; no members

    // First those inherited that the class does not override, as its superclass has them, then
    // those that it declares.

    NamedList<Property> properties;
    NamedList<Property> keys;       ///< of the properties, those that are keys
    NamedList<Property> references; ///< of the properties, those that are references
    NamedList<Method> methods;
};

/// Whether `a` and `b` say the same.
bool sameClass(const ClassNode& a, const ClassNode& b);

/// What GetClass shows of a class (DSP0200 clause 5.3.2.1). `localOnly` leaves out what is
/// propagated: properties, methods and qualifiers; `propertyList` narrows the properties further.
/// What is left out is not copied first.
Pegasus::CIMClass shownClass(const ClassNode& node, bool localOnly, bool includeQualifiers,
                             bool includeClassOrigin, const Pegasus::CIMPropertyList& propertyList);

} // namespace embedded::repository
