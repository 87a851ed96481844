// A qualifier on a class, property, method or parameter.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMReads.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus {

class CIMQualifier;
class CIMConstQualifier;
struct CIMQualifierRep;

/// The reads that CIMQualifier and CIMConstQualifier share. identical() compares name, value,
/// flavors and propagation.
class PEGASUS_COMMON_LINKAGE CIMQualifierReads
    : public CIMReads<CIMQualifierRep>,
      public CIMCompared<CIMQualifierReads, CIMQualifier, CIMConstQualifier> {
  public:
    CIMQualifierReads() = default;
    /// Throws UninitializedObjectException if `name` is null.
    CIMQualifierReads(const CIMName& name, const CIMValue& value,
                      const CIMFlavor& flavor = CIMFlavor(CIMFlavor::NONE),
                      Boolean propagated = false);

    const CIMName& getName() const;
    /// The type of the value.
    CIMType getType() const;
    /// Whether the value is an array.
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMFlavor& getFlavor() const;
    /// 1 if propagated from a superclass, else 0.
    Uint32 getPropagated() const;
};

/// A qualifier: name, value, flavors, and whether it was propagated from a superclass; a handle,
/// see CIMReads.
class PEGASUS_COMMON_LINKAGE CIMQualifier : public CIMQualifierReads {
  public:
    using CIMQualifierReads::CIMQualifierReads;

    /// Throws UninitializedObjectException if `name` is null, and Exception if the qualifier
    /// belongs to an element, in which its name is a key.
    void setName(const CIMName& name);
    /// Any value is taken, of whatever type.
    void setValue(const CIMValue& value);
    /// `flavor` takes the place of the flavors so far.
    void setFlavor(const CIMFlavor& flavor);
    /// Takes `flavor` out of the flavors.
    void unsetFlavor(const CIMFlavor& flavor);
    void setPropagated(Boolean propagated);
};

/// A CIMQualifier that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstQualifier : public CIMQualifierReads {
  public:
    CIMConstQualifier() = default;
    CIMConstQualifier(const CIMQualifier& x) : CIMQualifierReads(x) {}
    using CIMQualifierReads::CIMQualifierReads;
};

} // namespace Pegasus
