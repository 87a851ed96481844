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
#include <utility>

namespace Pegasus {

class CIMClass;
class CIMConstClass;

/// The reads that CIMClass and CIMConstClass share.
class PEGASUS_COMMON_LINKAGE CIMClassReads : public CIMElementReads {
  public:
    /// Whether the class has the qualifier Association with the value true.
    Boolean isAssociation() const;
    /// Whether the class has the qualifier Abstract with the value true.
    Boolean isAbstract() const;
    const CIMName& getSuperClassName() const;

    /// The index of the method `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findMethod(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getMethodCount().
    CIMConstMethod getMethod(Uint32 index) const;
    Uint32 getMethodCount() const;

    /// Sets `keyNames` to the names of the properties whose qualifier Key is true, in their order.
    void getKeyNames(Array<CIMName>& keyNames) const;
    Boolean hasKeys() const;
    /// A deep copy, properties, methods and qualifiers included.
    CIMClass clone() const;
    /// Same path, superclass, qualifiers, properties and methods, in the same order; names
    /// ignoring case.
    Boolean identical(const CIMConstClass& x) const;

  protected:
    using CIMElementReads::CIMElementReads;
    CIMClassReads() = default;
    /// Throws DynamicCastFailedException if `x` is an instance or uninitialized.
    explicit CIMClassReads(const CIMObjectReads& x);
    ~CIMClassReads() = default;
};

/// A class: its path, superclass, properties, methods and qualifiers.
///
/// Copies share one representation, also with a CIMObject made from it: what is changed through one
/// is seen through all; clone() makes an independent one. A default-constructed object is
/// uninitialized: all operations but isUninitialized() and assignment throw
/// UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMClass : public CIMClassReads, public CIMElement<CIMClass> {
  public:
    CIMClass() = default;
    /// Throws DynamicCastFailedException if `x` is an instance or uninitialized.
    explicit CIMClass(const CIMObject& x) : CIMClassReads(x) {}
    /// A null `superClassName` makes a root class.
    /// Throws UninitializedObjectException if `className` is null.
    CIMClass(const CIMName& className, const CIMName& superClassName = CIMName());

    using CIMElementReads::getQualifier;
    using CIMElement<CIMClass>::getQualifier;
    using CIMElementReads::getProperty;
    using CIMElement<CIMClass>::getProperty;
    void setSuperClassName(const CIMName& superClassName);

    /// Throws AlreadyExistsException if there is a method of that name (ignoring case), and
    /// UninitializedObjectException if `x` is uninitialized.
    CIMClass& addMethod(const CIMMethod& x);
    using CIMClassReads::getMethod;
    CIMMethod getMethod(Uint32 index);
    /// Throws IndexOutOfBoundsException unless `index` < getMethodCount().
    void removeMethod(Uint32 index);

    /// An instance of this class with independent copies of the properties that `propertyList`
    /// names (all, if it is null), with their default values; names that are no properties of the
    /// class are passed over. Qualifiers, of class and properties, and class origins are left out
    /// on demand.
    CIMInstance buildInstance(Boolean includeQualifiers, Boolean includeClassOrigin,
                              const CIMPropertyList& propertyList) const;

  private:
    friend class RepAccess;
    explicit CIMClass(std::shared_ptr<CIMObjectRep> rep) : CIMClassReads(std::move(rep)) {}
};

/// A CIMClass that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstClass : public CIMClassReads {
  public:
    CIMConstClass() = default;
    CIMConstClass(const CIMClass& x) : CIMClassReads(x) {}
    /// Throws DynamicCastFailedException if `x` is an instance or uninitialized.
    explicit CIMConstClass(const CIMObject& x) : CIMClassReads(x) {}
    explicit CIMConstClass(const CIMConstObject& x) : CIMClassReads(x) {}
    /// Throws UninitializedObjectException if `className` is null.
    CIMConstClass(const CIMName& className, const CIMName& superClassName = CIMName())
        : CIMConstClass(CIMClass(className, superClassName)) {}
};

} // namespace Pegasus
