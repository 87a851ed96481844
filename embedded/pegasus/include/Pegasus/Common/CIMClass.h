// A class.
#pragma once

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

#include <memory>

namespace Pegasus {

struct CIMClassRep;
class CIMConstClass;

/// A class: its path, superclass, properties, methods and qualifiers.
///
/// Copies share one representation, also with a CIMObject made from it: what is changed through one
/// is seen through all; clone() makes an independent one. A default-constructed object is
/// uninitialized: all operations but isUninitialized() and assignment throw
/// UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMClass {
  public:
    CIMClass() = default;
    CIMClass(const CIMClass& x) = default;
    /// Throws DynamicCastFailedException if `x` is an instance or uninitialized.
    explicit CIMClass(const CIMObject& x);
    /// A null `superClassName` makes a root class.
    /// Throws UninitializedObjectException if `className` is null.
    CIMClass(const CIMName& className, const CIMName& superClassName = CIMName());
    CIMClass& operator=(const CIMClass& x) = default;
    ~CIMClass() = default;

    /// Whether the class has the qualifier Association with the value true.
    Boolean isAssociation() const;
    /// Whether the class has the qualifier Abstract with the value true.
    Boolean isAbstract() const;
    /// The class name of the path.
    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    /// As CIMInstance::setPath.
    void setPath(const CIMObjectPath& path);
    const CIMName& getSuperClassName() const;
    void setSuperClassName(const CIMName& superClassName);

    /// Throws AlreadyExistsException if there is a qualifier of that name (ignoring case), and
    /// UninitializedObjectException if `qualifier` is uninitialized.
    CIMClass& addQualifier(const CIMQualifier& qualifier);
    /// The index of the qualifier `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findQualifier(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getQualifierCount().
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    /// Throws IndexOutOfBoundsException unless `index` < getQualifierCount().
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    /// As CIMInstance::addProperty; throws TypeMismatchException, too, for a reference without a
    /// reference class.
    CIMClass& addProperty(const CIMProperty& x);
    /// The index of the property `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findProperty(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getPropertyCount().
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    /// Throws IndexOutOfBoundsException unless `index` < getPropertyCount().
    void removeProperty(Uint32 index);
    Uint32 getPropertyCount() const;

    /// Throws AlreadyExistsException if there is a method of that name (ignoring case), and
    /// UninitializedObjectException if `x` is uninitialized.
    CIMClass& addMethod(const CIMMethod& x);
    /// The index of the method `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findMethod(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getMethodCount().
    CIMMethod getMethod(Uint32 index);
    CIMConstMethod getMethod(Uint32 index) const;
    /// Throws IndexOutOfBoundsException unless `index` < getMethodCount().
    void removeMethod(Uint32 index);
    Uint32 getMethodCount() const;

    /// Sets `keyNames` to the names of the properties whose qualifier Key is true, in their order.
    void getKeyNames(Array<CIMName>& keyNames) const;
    Boolean hasKeys() const;
    /// A deep copy, properties, methods and qualifiers included.
    CIMClass clone() const;
    /// Same path, superclass, qualifiers, properties and methods, in the same order; names
    /// ignoring case.
    Boolean identical(const CIMConstClass& x) const;
    Boolean isUninitialized() const;

    /// An instance of this class with independent copies of the properties that `propertyList`
    /// names (all, if it is null), with their default values; names that are no properties of the
    /// class are passed over. Qualifiers, of class and properties, and class origins are left out
    /// on demand.
    CIMInstance buildInstance(Boolean includeQualifiers, Boolean includeClassOrigin,
                              const CIMPropertyList& propertyList) const;

  private:
    friend class RepAccess;
    explicit CIMClass(std::shared_ptr<CIMClassRep> rep);
    std::shared_ptr<CIMClassRep> _rep;
};

/// A CIMClass that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstClass {
  public:
    CIMConstClass() = default;
    CIMConstClass(const CIMConstClass& x) = default;
    CIMConstClass(const CIMClass& x);
    /// Throws DynamicCastFailedException if `x` is an instance or uninitialized.
    explicit CIMConstClass(const CIMObject& x);
    explicit CIMConstClass(const CIMConstObject& x);
    /// Throws UninitializedObjectException if `className` is null.
    CIMConstClass(const CIMName& className, const CIMName& superClassName = CIMName());
    CIMConstClass& operator=(const CIMConstClass& x) = default;
    CIMConstClass& operator=(const CIMClass& x);
    ~CIMConstClass() = default;

    Boolean isAssociation() const;
    Boolean isAbstract() const;
    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    const CIMName& getSuperClassName() const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;
    Uint32 findProperty(const CIMName& name) const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;
    Uint32 findMethod(const CIMName& name) const;
    CIMConstMethod getMethod(Uint32 index) const;
    Uint32 getMethodCount() const;
    void getKeyNames(Array<CIMName>& keyNames) const;
    Boolean hasKeys() const;
    /// A deep copy, which can be changed.
    CIMClass clone() const;
    Boolean identical(const CIMConstClass& x) const;
    Boolean isUninitialized() const;

  private:
    friend class RepAccess;
    std::shared_ptr<const CIMClassRep> _rep;
};

} // namespace Pegasus
