// An instance of a class.
#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

#include <memory>

namespace Pegasus {

class CIMConstInstance;
struct CIMInstanceRep;

/// An instance: its path, properties and qualifiers.
///
/// Copies share one representation, also with a CIMObject made from it: what is changed through one
/// is seen through all; clone() makes an independent one. A default-constructed object is
/// uninitialized: all operations but isUninitialized() and assignment throw
/// UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMInstance {
  public:
    CIMInstance() = default;
    CIMInstance(const CIMInstance& x) = default;
    /// Throws DynamicCastFailedException if `x` is a class or uninitialized.
    explicit CIMInstance(const CIMObject& x);
    /// An instance without properties, whose path is the class name alone.
    /// Throws UninitializedObjectException if `className` is null.
    CIMInstance(const CIMName& className);
    CIMInstance& operator=(const CIMInstance& x) = default;
    ~CIMInstance() = default;

    /// The class name of the path.
    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    /// The class name of `path` becomes the instance's, so that its spelling may change. Key
    /// bindings and key properties are not compared. Throws UninitializedObjectException if `path`
    /// has no class name, and TypeMismatchException if it has another one (ignoring case).
    void setPath(const CIMObjectPath& path);

    /// Throws AlreadyExistsException if there is a qualifier of that name (ignoring case), and
    /// UninitializedObjectException if `qualifier` is uninitialized.
    CIMInstance& addQualifier(const CIMQualifier& qualifier);
    /// The index of the qualifier `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findQualifier(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getQualifierCount().
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    /// Throws IndexOutOfBoundsException unless `index` < getQualifierCount().
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    /// The property is shared with the caller, not copied. Throws AlreadyExistsException if there
    /// is a property of that name (ignoring case), and UninitializedObjectException if `x` is
    /// uninitialized.
    CIMInstance& addProperty(const CIMProperty& x);
    /// The index of the property `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findProperty(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getPropertyCount().
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    /// Throws IndexOutOfBoundsException unless `index` < getPropertyCount().
    void removeProperty(Uint32 index);
    Uint32 getPropertyCount() const;

    /// The path that the key properties of `cimClass` and their values here make: class name and
    /// key bindings, without host and namespace.
    /// Throws Exception "no such property: <name>" if a key property is missing here,
    /// TypeMismatchException if it is an array, and MalformedObjectNameException if it is a null
    /// reference.
    CIMObjectPath buildPath(const CIMConstClass& cimClass) const;

    /// A deep copy, properties and qualifiers included.
    CIMInstance clone() const;
    /// Same path, qualifiers and properties, in the same order; names ignoring case.
    Boolean identical(const CIMConstInstance& x) const;
    Boolean isUninitialized() const;

    /// Removes, in place, what a client did not ask for: the properties that are not in
    /// `propertyList` (none, if it is null), the qualifiers of the instance and of its properties
    /// unless `includeQualifiers`, and the class origins unless `includeClassOrigin`.
    void instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                        const CIMPropertyList& propertyList);

  private:
    friend class RepAccess;
    explicit CIMInstance(std::shared_ptr<CIMInstanceRep> rep);
    std::shared_ptr<CIMInstanceRep> _rep;
};

/// A CIMInstance that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstInstance {
  public:
    CIMConstInstance() = default;
    CIMConstInstance(const CIMConstInstance& x) = default;
    CIMConstInstance(const CIMInstance& x);
    /// Throws DynamicCastFailedException if `x` is a class or uninitialized.
    explicit CIMConstInstance(const CIMObject& x);
    explicit CIMConstInstance(const CIMConstObject& x);
    /// Throws UninitializedObjectException if `className` is null.
    CIMConstInstance(const CIMName& className);
    CIMConstInstance& operator=(const CIMConstInstance& x) = default;
    CIMConstInstance& operator=(const CIMInstance& x);
    ~CIMConstInstance() = default;

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;
    Uint32 findProperty(const CIMName& name) const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;
    CIMObjectPath buildPath(const CIMConstClass& cimClass) const;
    /// A deep copy, which can be changed.
    CIMInstance clone() const;
    Boolean identical(const CIMConstInstance& x) const;
    Boolean isUninitialized() const;

  private:
    friend class RepAccess;
    std::shared_ptr<const CIMInstanceRep> _rep;
};

} // namespace Pegasus
