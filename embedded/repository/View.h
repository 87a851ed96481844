// What a repository holds at one moment, for readers.
#pragma once

#include "repository/InstanceStore.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifierDecl.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace embedded::repository {

class NameSpace;
class NameSpaceList;

/// A cheap handle of one instance, which never changes and is valid as long as it is held.
///
/// Thread-safety: as of a shared pointer to something constant; so of the classes below.
class StoredInstance {
  public:
    explicit StoredInstance(Ref<Stored> stored) : _stored(std::move(stored)) {}

    /// Class and keys, no host and no namespace.
    const Pegasus::CIMObjectPath& path() const { return _stored->path; }
    const Pegasus::CIMName& className() const { return path().getClassName(); }
    /// The caller's own copy.
    Pegasus::CIMInstance instance(bool withQualifiers = true) const {
        return _stored->instance(withQualifiers);
    }
    /// The value of a property; none if the instance has none of that name.
    std::optional<Pegasus::CIMValue> value(const Pegasus::CIMName& property) const {
        return _stored->value(property);
    }
    /// Those that have a value.
    References references() const { return _stored->references(); }

  private:
    Ref<Stored> _stored;
};

/// The instances of one class in the order in which they were created. Cheap to copy.
class InstanceList {
  public:
    InstanceList() = default;
    explicit InstanceList(SharedTree<InstanceStore::Numbered> instances)
        : _instances(std::move(instances)) {}

    std::size_t size() const { return _instances.size(); }
    /// REQUIRES: index < size(). Takes the logarithm of size().
    StoredInstance operator[](std::size_t index) const {
        return StoredInstance(_instances[index].instance);
    }

  private:
    SharedTree<InstanceStore::Numbered> _instances;
};

/// Everything that a repository held when the view was taken. Cheap to copy; may be kept for any
/// time. No function waits for a lock.
///
/// Errors are Pegasus::CIMException with the status and message that a client is to see; for an
/// unknown namespace CIM_ERR_INVALID_NAMESPACE "<nameSpace>".
class View {
  public:
    bool hasNameSpace(const Pegasus::CIMNamespaceName& nameSpace) const;
    /// In the order in which they were created.
    std::vector<Pegasus::CIMNamespaceName> nameSpaces() const;

    // Classes. What they inherit (properties, methods, qualifiers) is present, each with its class
    // of origin.

    bool hasClass(const Pegasus::CIMNamespaceName& nameSpace,
                  const Pegasus::CIMName& className) const;
    /// The flags are as in GetClass (DSP0200 clause 5.3.2.1). Only what they ask for is copied.
    /// Unknown class: CIM_ERR_NOT_FOUND.
    Pegasus::CIMClass getClass(const Pegasus::CIMNamespaceName& nameSpace,
                               const Pegasus::CIMName& className, bool localOnly = false,
                               bool includeQualifiers = true, bool includeClassOrigin = true,
                               const Pegasus::CIMPropertyList& propertyList = {}) const;
    /// Direct subclasses, or all below with `deep`, in the order of declaration, parents before
    /// children; `className` null: from the roots. Unknown class: CIM_ERR_INVALID_CLASS.
    std::vector<Pegasus::CIMName> subClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                const Pegasus::CIMName& className, bool deep) const;
    /// The superclasses, nearest first. Unknown class: CIM_ERR_INVALID_CLASS.
    std::vector<Pegasus::CIMName> superClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                  const Pegasus::CIMName& className) const;
    /// Whether `derived` is `base` or is derived from it; false, too, if a name is unknown.
    bool isA(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& derived,
             const Pegasus::CIMName& base) const;

    // In the order of getClass()'s properties. Unknown class: CIM_ERR_NOT_FOUND.

    std::vector<Pegasus::CIMName> propertyNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                const Pegasus::CIMName& className) const;
    std::vector<Pegasus::CIMName> keyNames(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& className) const;
    /// Role and class of each reference.
    std::vector<std::pair<Pegasus::CIMName, Pegasus::CIMName>>
    references(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className) const;

    /// The association classes with a reference that can take `sourceClass` (it or one of its
    /// superclasses is the reference's class), in the order of declaration. `filter`, when not
    /// null, narrows them to that class and its subclasses.
    /// Unknown source class or filter: CIM_ERR_INVALID_PARAMETER "<class>".
    std::vector<Pegasus::CIMName> associationClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                        const Pegasus::CIMName& sourceClass,
                                                        const Pegasus::CIMName& filter) const;

    // Instances of exactly the named class. Unknown class: CIM_ERR_INVALID_CLASS.

    /// Whatever host and namespace `instanceName` has. CIM_ERR_NOT_FOUND "<path>" if there is none.
    StoredInstance getInstance(const Pegasus::CIMNamespaceName& nameSpace,
                               const Pegasus::CIMObjectPath& instanceName) const;
    InstanceList instances(const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMName& className) const;
    /// The instances of `associationClass` with a reference to `source`, in their order. `source`
    /// is in `nameSpace`, whatever namespace its path has; a reference without a namespace means
    /// `nameSpace`, too; hosts are ignored. Instances that are not wanted cost time only for each
    /// group.
    std::vector<StoredInstance> referrers(const Pegasus::CIMNamespaceName& nameSpace,
                                          const Pegasus::CIMName& associationClass,
                                          const Pegasus::CIMObjectPath& source,
                                          const GroupFilter& isWanted = {}) const;

    // Qualifier declarations. Unknown name: CIM_ERR_NOT_FOUND.

    Pegasus::CIMQualifierDecl getQualifier(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& qualifierName) const;
    std::vector<Pegasus::CIMQualifierDecl>
    enumerateQualifiers(const Pegasus::CIMNamespaceName& nameSpace) const;

  private:
    friend class Repository;
    explicit View(std::shared_ptr<const NameSpaceList> all) : _all(std::move(all)) {}

    const NameSpace& in(const Pegasus::CIMNamespaceName& nameSpace) const;

    std::shared_ptr<const NameSpaceList> _all;
};

} // namespace embedded::repository
