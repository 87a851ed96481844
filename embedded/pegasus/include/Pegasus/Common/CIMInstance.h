// An instance of a class.
#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

#include <memory>
#include <utility>

namespace Pegasus {

class CIMInstance;
class CIMConstInstance;

/// The reads that CIMInstance and CIMConstInstance share.
class PEGASUS_COMMON_LINKAGE CIMInstanceReads : public CIMElementReads {
  public:
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

  protected:
    using CIMElementReads::CIMElementReads;
    CIMInstanceReads() = default;
    /// Throws DynamicCastFailedException if `x` is a class or uninitialized.
    explicit CIMInstanceReads(const CIMObjectReads& x);
    ~CIMInstanceReads() = default;
};

/// An instance: its path, properties and qualifiers.
///
/// Copies share one representation, also with a CIMObject made from it: what is changed through one
/// is seen through all; clone() makes an independent one. A default-constructed object is
/// uninitialized: all operations but isUninitialized() and assignment throw
/// UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMInstance : public CIMInstanceReads, public CIMElement<CIMInstance> {
  public:
    CIMInstance() = default;
    /// Throws DynamicCastFailedException if `x` is a class or uninitialized.
    explicit CIMInstance(const CIMObject& x) : CIMInstanceReads(x) {}
    /// An instance without properties, whose path is the class name alone.
    /// Throws UninitializedObjectException if `className` is null.
    CIMInstance(const CIMName& className);

    using CIMElementReads::getQualifier;
    using CIMElement<CIMInstance>::getQualifier;
    using CIMElementReads::getProperty;
    using CIMElement<CIMInstance>::getProperty;

    /// Removes, in place, what a client did not ask for: the properties that are not in
    /// `propertyList` (none, if it is null), the qualifiers of the instance and of its properties
    /// unless `includeQualifiers`, and the class origins unless `includeClassOrigin`.
    void instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                        const CIMPropertyList& propertyList);

  private:
    friend class RepAccess;
    explicit CIMInstance(std::shared_ptr<CIMObjectRep> rep) : CIMInstanceReads(std::move(rep)) {}
};

/// A CIMInstance that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstInstance : public CIMInstanceReads {
  public:
    CIMConstInstance() = default;
    CIMConstInstance(const CIMInstance& x) : CIMInstanceReads(x) {}
    /// Throws DynamicCastFailedException if `x` is a class or uninitialized.
    explicit CIMConstInstance(const CIMObject& x) : CIMInstanceReads(x) {}
    explicit CIMConstInstance(const CIMConstObject& x) : CIMInstanceReads(x) {}
    /// Throws UninitializedObjectException if `className` is null.
    CIMConstInstance(const CIMName& className) : CIMConstInstance(CIMInstance(className)) {}
};

} // namespace Pegasus
