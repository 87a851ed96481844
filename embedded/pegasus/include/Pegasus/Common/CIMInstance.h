// An instance of a class.
#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus {

class CIMConstClass;
class CIMConstInstance;

/// The reads that CIMInstance and CIMConstInstance share. identical() compares path, qualifiers
/// and properties, in their order.
class PEGASUS_COMMON_LINKAGE CIMInstanceReads
    : public CIMElementReads,
      public CIMCompared<CIMInstanceReads, CIMInstance, CIMConstInstance> {
  public:
    CIMInstanceReads() = default;
    /// An instance without properties, whose path is the class name alone.
    /// Throws UninitializedObjectException if `className` is null.
    CIMInstanceReads(const CIMName& className);

    /// The path that the key properties of `cimClass` and their values here make: class name and
    /// key bindings, without host and namespace.
    /// Throws Exception "no such property: <name>" if a key property is missing here,
    /// TypeMismatchException if it is an array, and MalformedObjectNameException if it is a null
    /// reference.
    CIMObjectPath buildPath(const CIMConstClass& cimClass) const;

  protected:
    using CIMElementReads::CIMElementReads;
    /// Throws DynamicCastFailedException if `x` is a class or uninitialized.
    explicit CIMInstanceReads(const CIMObjectReads& x);
};

/// An instance: its path, properties and qualifiers; a handle, see CIMReads. It shares its
/// representation also with a CIMObject made from it.
class PEGASUS_COMMON_LINKAGE CIMInstance : public CIMElement<CIMInstance, CIMInstanceReads> {
  public:
    CIMInstance() = default;
    using CIMElement::CIMElement;
    /// Throws DynamicCastFailedException if `x` is a class or uninitialized.
    explicit CIMInstance(const CIMObject& x) : CIMElement(x) {}

    /// Removes, in place, what a client did not ask for: the properties that are not in
    /// `propertyList` (none, if it is null), the qualifiers of the instance and of its properties
    /// unless `includeQualifiers`, and the class origins unless `includeClassOrigin`.
    void instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                        const CIMPropertyList& propertyList);
};

/// A CIMInstance that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstInstance : public CIMInstanceReads {
  public:
    CIMConstInstance() = default;
    using CIMInstanceReads::CIMInstanceReads;
    CIMConstInstance(const CIMInstance& x) : CIMInstanceReads(x) {}
    /// Throws DynamicCastFailedException if `x` is a class or uninitialized.
    explicit CIMConstInstance(const CIMObjectReads& x) : CIMInstanceReads(x) {}
};

} // namespace Pegasus
