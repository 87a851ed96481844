// An operation of a CIM server (DSP0200 clause 5.3.2) as one value, and its answer. Whoever asks (a
// provider's CIMOMHandle, a protocol) and whoever answers know each other by these types alone.
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

/// On whose behalf something is asked.
struct Caller {
    String userName;      ///< empty: not authenticated
    bool mayWrite = true; ///< what a module asks of the server is not held against its client
};

/// An operation with its arguments. Those that its kind does not have, and those that were left
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

/// Puts the next thing into its argument; false when there is no more. The things are the
/// caller's own.
///
/// May be held for as long as one likes, by any thread and without a lock, and given up at any
/// time. Called by one thread at a time.
using Cursor = std::function<bool(Answered&)>;

/// What an operation answers, and from how many sources (providers, repository). A client can tell:
/// an empty answer of one source has no IRETURNVALUE, one of several sources has an empty one.
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
