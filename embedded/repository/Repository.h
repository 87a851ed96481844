// Classes, instances and qualifier declarations by namespace, in memory.
//
// What goes in is checked against what is there (superclass, property, key and reference types);
// what comes out of a class is resolved: inherited properties, methods and qualifiers are present,
// each with its class of origin. Everything handed out is the caller's own copy.
//
// Errors are Pegasus::CIMException with the status and message that a client is to see, but for
// load(), which speaks to the one who wrote the MOF.
//
// Readers take a view; a write makes the next state beside the one that views hold, and shares with
// it all that it does not change. Views that are held stay as they are, and nobody waits for them.
//
// Thread-safety: all members may be called from several threads at once. Writes, a load among them,
// come one after the other; each is seen whole, or not yet.
#pragma once

#include "mof/Mof.h"
#include "repository/View.h"
#include "threads/Locks.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>

#include <memory>

namespace embedded::repository {

class Repository {
  public:
    Repository();

    /// What the repository holds now. Takes no time.
    View view() const;

    /// Makes `nameSpace` known; one that is known already stays as it is.
    void createNameSpace(const Pegasus::CIMNamespaceName& nameSpace);
    /// Adds all declarations of `specification`, or none: a declaration without meaning (unknown
    /// superclass, value of the wrong type, second instance with the same keys, ...) throws
    /// mof::MofError with its place and leaves the repository as it was. Declarations without a
    /// namespace of their own go into `nameSpace`; namespaces are created as needed. A qualifier
    /// or class that is declared again in the same words is accepted; in other words, an error.
    void load(const mof::Specification& specification, const Pegasus::CIMNamespaceName& nameSpace);

    // Instances of exactly the named class. Unknown namespace: CIM_ERR_INVALID_NAMESPACE
    // "<nameSpace>"; unknown class: CIM_ERR_INVALID_CLASS.

    /// Sets the path from the class's keys; CIM_ERR_ALREADY_EXISTS for keys that are there,
    /// CIM_ERR_INVALID_PARAMETER for a missing key or a property of the wrong type.
    Pegasus::CIMObjectPath createInstance(const Pegasus::CIMNamespaceName& nameSpace,
                                          const Pegasus::CIMInstance& instance);
    /// CIM_ERR_NOT_FOUND "<path>" when there is none.
    void modifyInstance(const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMInstance& instance,
                        const Pegasus::CIMPropertyList& propertyList);
    void deleteInstance(const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMObjectPath& instanceName);

  private:
    /// `change` works on a copy, which is thrown away if it throws.
    template <class Change>
    void write(Change change);
    void publish(std::shared_ptr<const NameSpaceList> next) REQUIRES(_writing);

    threads::Mutex _writing;         ///< held for the whole of a write
    mutable threads::Mutex _reading; ///< held for as long as it takes to copy or change a pointer
    std::shared_ptr<const NameSpaceList> _now GUARDED_BY(_reading);
};

} // namespace embedded::repository
