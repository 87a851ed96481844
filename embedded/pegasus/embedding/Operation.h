// An operation of a CIM server (DSP0200 clause 5.3.2) as one value, and its answer. Those who ask
// (a provider's CIMOMHandle, a protocol) and those who answer share only these types.
#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Linkage.h>

#include <cstddef>
#include <functional>
#include <utility>
#include <variant>

namespace Pegasus::embedding {

enum class OperationKind {
    GetClass,
    EnumerateClasses,
    EnumerateClassNames,
    GetInstance,
    EnumerateInstances,
    EnumerateInstanceNames,
    CreateInstance,
    ModifyInstance,
    DeleteInstance,
    GetProperty,
    Associators,
    AssociatorNames,
    References,
    ReferenceNames,
    // Those that a CIMOMHandle has no function for:
    GetQualifier,
    EnumerateQualifiers,
};

/// As DSP0200 spells it, with a small first letter: "getClass".
PEGASUS_COMMON_LINKAGE const char* operationName(OperationKind kind);

/// The user on whose behalf an operation is asked for.
struct Caller {
    String userName;      ///< empty: not authenticated
    bool mayWrite = true; ///< true for modules, even if their client may not write
};

/// An operation with its arguments. Arguments that its kind does not have, and those that were left
/// out, are null, empty or false.
struct PEGASUS_COMMON_LINKAGE Operation {
    OperationKind kind{};
    Caller caller;
    CIMNamespaceName nameSpace;
    CIMName className; ///< ClassName of the class operations and enumerations; null: all roots
    CIMObjectPath objectName; ///< InstanceName or ObjectName
    CIMInstance instance;     ///< NewInstance or ModifiedInstance
    CIMName memberName;       ///< PropertyName or QualifierName
    CIMName assocClass;       ///< of the associators operations
    CIMName resultClass;
    String role;
    String resultRole;
    bool localOnly = false;
    bool deepInheritance = false;
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
    CIMPropertyList propertyList;
    /// Paths of an enumeration are to have a host and a namespace, as those that associations lead
    /// to always have; what a provider has set stays.
    bool fullPaths = false;

    /// The class that is asked for: the one named, or that of the path or instance named.
    const CIMName& target() const;
};

/// One thing that an operation answers with. Which it is follows from the kind of the operation.
using Answered = std::variant<CIMName, CIMObjectPath, CIMInstance, CIMObject, CIMClass, CIMValue,
                              CIMQualifierDecl>;

/// Puts the next thing, which the caller owns, into its argument; returns false at the end.
///
/// May be kept for any time, by any thread and without a lock, and destroyed at any time. One
/// thread at a time may call it.
using Cursor = std::function<bool(Answered&)>;

/// The answer to an operation, and its number of sources (providers, repository). Replies differ by
/// it: an empty answer of one source has no IRETURNVALUE, one of several sources has an empty one.
struct Answer {
    Cursor next; ///< empty: there is nothing
    unsigned sources = 1;
    std::size_t held = 0; ///< things that the cursor keeps in memory of its own
};

/// A cursor over one thing.
PEGASUS_COMMON_LINKAGE Cursor cursorOver(Answered only);

/// A cursor over the elements of a random access container that it keeps, each as an Answered.
template <class Container>
Cursor cursorOverAll(Container items) {
    return [items = std::move(items), at = Uint32(0)](Answered& answered) mutable {
        if (at == items.size())
            return false;
        answered = std::as_const(items)[at++];
        return true;
    };
}

/// The thing of an answer that has one; a default-constructed one if it is empty.
template <class T>
T onlyOf(const Answer& answer) {
    Answered answered;
    return answer.next && answer.next(answered) ? std::get<T>(std::move(answered)) : T();
}

/// All things of an answer.
template <class T>
Array<T> allOf(const Answer& answer) {
    Array<T> all;
    for (Answered answered; answer.next && answer.next(answered);)
        all.append(std::get<T>(answered));
    return all;
}

} // namespace Pegasus::embedding
