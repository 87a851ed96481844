// A property, of a class or of an instance.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMQualified.h>
#include <Pegasus/Common/CIMReads.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus {

class CIMProperty;
class CIMConstProperty;
struct CIMPropertyRep;

/// The reads that CIMProperty and CIMConstProperty share. identical() compares name, value,
/// reference class, class origin, propagation and qualifiers, not the fixed array size.
class PEGASUS_COMMON_LINKAGE CIMPropertyReads
    : public CIMReads<CIMPropertyRep>,
      public CIMQualifiedReads<CIMPropertyReads>,
      public CIMCompared<CIMPropertyReads, CIMProperty, CIMConstProperty> {
  public:
    CIMPropertyReads() = default;
    /// `arraySize` is the fixed number of elements, 0 for any. A reference may leave out
    /// `referenceClassName` when the property is meant for an instance.
    ///
    /// Throws UninitializedObjectException if `name` is null; TypeMismatchException if `arraySize`
    /// is not 0 and `value` is not an array of that size, if `value` is an array of references, or
    /// if `referenceClassName` is given for a value that is no reference.
    CIMPropertyReads(const CIMName& name, const CIMValue& value, Uint32 arraySize = 0,
                     const CIMName& referenceClassName = CIMName(),
                     const CIMName& classOrigin = CIMName(), Boolean propagated = false);

    const CIMName& getName() const;
    const CIMValue& getValue() const;
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    /// Null if the property is no reference, or was made without a class.
    const CIMName& getReferenceClassName() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;
};

/// A property: name, value, qualifiers, and where it comes from; a handle, see CIMReads. It shares
/// its representation also with the instance or class that it was added to or taken from: clone()
/// a class's property before it is given to an instance.
class PEGASUS_COMMON_LINKAGE CIMProperty : public CIMQualified<CIMProperty, CIMPropertyReads> {
  public:
    using CIMQualified::CIMQualified;

    /// Throws UninitializedObjectException if `name` is null, and Exception if the property
    /// belongs to a class or an instance, in which its name is a key.
    void setName(const CIMName& name);
    /// Throws TypeMismatchException unless `value` has the type and arrayness of the present one,
    /// and, for an array of fixed size, that size; also for an array of references.
    void setValue(const CIMValue& value);
    void setClassOrigin(const CIMName& classOrigin);
    void setPropagated(Boolean propagated);
};

/// A CIMProperty that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstProperty : public CIMPropertyReads {
  public:
    CIMConstProperty() = default;
    CIMConstProperty(const CIMProperty& x) : CIMPropertyReads(x) {}
    using CIMPropertyReads::CIMPropertyReads;
};

} // namespace Pegasus
