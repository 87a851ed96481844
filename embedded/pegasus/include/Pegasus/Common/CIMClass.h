// A class.
#pragma once

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus {

/// The reads that CIMClass and CIMConstClass share. identical() compares path, superclass,
/// qualifiers, properties and methods, in their order.
class PEGASUS_COMMON_LINKAGE CIMClassReads
    : public CIMElementReads,
      public CIMCompared<CIMClassReads, CIMClass, CIMConstClass> {
  public:
    CIMClassReads() = default;
    /// A null `superClassName` makes a root class.
    /// Throws UninitializedObjectException if `className` is null.
    CIMClassReads(const CIMName& className, const CIMName& superClassName = CIMName());

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

  protected:
    using CIMElementReads::CIMElementReads;
    /// Throws DynamicCastFailedException if `x` is an instance or uninitialized.
    explicit CIMClassReads(const CIMObjectReads& x);
};

/// A class: its path, superclass, properties, methods and qualifiers; a handle, see CIMReads. It
/// shares its representation also with a CIMObject made from it.
class PEGASUS_COMMON_LINKAGE CIMClass : public CIMElement<CIMClass, CIMClassReads> {
  public:
    CIMClass() = default;
    using CIMElement::CIMElement;
    /// Throws DynamicCastFailedException if `x` is an instance or uninitialized.
    explicit CIMClass(const CIMObject& x) : CIMElement(x) {}

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
};

/// A CIMClass that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstClass : public CIMClassReads {
  public:
    CIMConstClass() = default;
    using CIMClassReads::CIMClassReads;
    CIMConstClass(const CIMClass& x) : CIMClassReads(x) {}
    /// Throws DynamicCastFailedException if `x` is an instance or uninitialized.
    explicit CIMConstClass(const CIMObjectReads& x) : CIMClassReads(x) {}
};

} // namespace Pegasus
