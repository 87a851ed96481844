// Classes, instances and qualifier declarations by namespace, in memory.
//
// What goes in is checked against what is there (superclass, property, key and reference types);
// what comes out of a class is resolved: inherited properties, methods and qualifiers are present,
// each with its class of origin. Everything handed out is the caller's own copy.
//
// Errors are Pegasus::CIMException with the status and message that a client is to see, but for
// load(), which speaks to the one who wrote the MOF.
//
// Thread-safety: all members may be called from several threads at once.
#pragma once

#include "mof/Mof.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifierDecl.h>

#include <memory>
#include <vector>

namespace embedded::repository {

class Repository;

class StoredInstance {
  public:
    explicit StoredInstance(const Pegasus::CIMInstance& i) : _i(i) {}
    const Pegasus::CIMObjectPath& path() const { return _i.getPath(); }
    Pegasus::CIMInstance instance(bool = true) const { return _i.clone(); }
    std::vector<std::pair<Pegasus::CIMName, Pegasus::CIMObjectPath>> references() const;
  private:
    Pegasus::CIMInstance _i;
};
class InstanceList {
  public:
    explicit InstanceList(std::vector<Pegasus::CIMInstance> all) : _all(std::move(all)) {}
    std::size_t size() const { return _all.size(); }
    StoredInstance operator[](std::size_t i) const { return StoredInstance(_all[i]); }
  private:
    std::vector<Pegasus::CIMInstance> _all;
};
class View {
  public:
    explicit View(const Repository& r) : _r(&r) {}
    bool hasNameSpace(const Pegasus::CIMNamespaceName& ns) const;
    bool hasClass(const Pegasus::CIMNamespaceName& ns, const Pegasus::CIMName& c) const;
    Pegasus::CIMClass getClass(const Pegasus::CIMNamespaceName& nameSpace,
                               const Pegasus::CIMName& className, bool localOnly = false,
                               bool includeQualifiers = true, bool includeClassOrigin = true,
                               const Pegasus::CIMPropertyList& propertyList = {}) const;
    std::vector<Pegasus::CIMName> subClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                const Pegasus::CIMName& className, bool deep) const;
    std::vector<Pegasus::CIMName> superClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                  const Pegasus::CIMName& className) const;
    bool isA(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& d, const Pegasus::CIMName& b) const;
    std::vector<Pegasus::CIMName> keyNames(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& c) const;
    std::vector<Pegasus::CIMName> associationClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                        const Pegasus::CIMName& sourceClass,
                                                        const Pegasus::CIMName& filter) const;
    StoredInstance getInstance(const Pegasus::CIMNamespaceName& nameSpace,
                                     const Pegasus::CIMObjectPath& instanceName) const;
    InstanceList instances(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className) const;
    std::vector<StoredInstance> referrers(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className, const Pegasus::CIMObjectPath& source) const;
    Pegasus::CIMQualifierDecl getQualifier(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& qualifierName) const;
    std::vector<Pegasus::CIMQualifierDecl>
    enumerateQualifiers(const Pegasus::CIMNamespaceName& nameSpace) const;
  private:
    const Repository* _r;
};

class Repository {
  public:
    View view() const { return View(*this); }
    Repository();
    ~Repository();
    Repository(const Repository&) = delete;
    Repository& operator=(const Repository&) = delete;

    /// Makes `nameSpace` known; one that is known already stays as it is.
    void createNameSpace(const Pegasus::CIMNamespaceName& nameSpace);
    bool hasNameSpace(const Pegasus::CIMNamespaceName& nameSpace) const;
    /// In the order in which they were created.
    std::vector<Pegasus::CIMNamespaceName> nameSpaces() const;

    /// Adds all declarations of `specification`, or none: a declaration without meaning (unknown
    /// superclass, value of the wrong type, second instance with the same keys, ...) throws
    /// mof::MofError with its place and leaves the repository as it was. Declarations without a
    /// namespace of their own go into `nameSpace`; namespaces are created as needed. A qualifier
    /// or class that is declared again in the same words is accepted; in other words, an error.
    void load(const mof::Specification& specification, const Pegasus::CIMNamespaceName& nameSpace);

    // Classes. Unknown namespace: CIM_ERR_INVALID_NAMESPACE "<nameSpace>".

    bool hasClass(const Pegasus::CIMNamespaceName& nameSpace,
                  const Pegasus::CIMName& className) const;
    /// The flags as in GetClass (DSP0200 clause 5.3.2.1). Unknown class: CIM_ERR_NOT_FOUND.
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
    /// The association classes with a reference that can take `sourceClass` (it or one of its
    /// superclasses is the reference's class), in the order of declaration. `filter`, when not
    /// null, narrows them to that class and its subclasses.
    /// Unknown source class or filter: CIM_ERR_INVALID_PARAMETER "<class>".
    std::vector<Pegasus::CIMName> associationClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                        const Pegasus::CIMName& sourceClass,
                                                        const Pegasus::CIMName& filter) const;

    // Instances of exactly the named class. Their paths carry class and keys, no host and no
    // namespace. Unknown class: CIM_ERR_INVALID_CLASS.

    Pegasus::CIMInstance getInstance(const Pegasus::CIMNamespaceName& nameSpace,
                                     const Pegasus::CIMObjectPath& instanceName) const;
    std::vector<Pegasus::CIMInstance> enumerateInstances(const Pegasus::CIMNamespaceName& nameSpace,
                                                         const Pegasus::CIMName& className) const;
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

    // Qualifier declarations. Unknown name: CIM_ERR_NOT_FOUND.

    Pegasus::CIMQualifierDecl getQualifier(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& qualifierName) const;
    std::vector<Pegasus::CIMQualifierDecl>
    enumerateQualifiers(const Pegasus::CIMNamespaceName& nameSpace) const;

  private:
    class Implementation;
    std::unique_ptr<Implementation> _implementation;
};

} // namespace embedded::repository
