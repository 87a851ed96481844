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

#include <memory>
#include <utility>

namespace Pegasus {

class CIMQualifier;
class CIMConstQualifier;
struct CIMQualifierRep;

/// The reads that CIMQualifier and CIMConstQualifier share.
class PEGASUS_COMMON_LINKAGE CIMQualifierReads : public CIMReads<CIMQualifierRep> {
  public:
    const CIMName& getName() const;
    /// The type of the value.
    CIMType getType() const;
    /// Whether the value is an array.
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMFlavor& getFlavor() const;
    /// 1 if propagated from a superclass, else 0.
    Uint32 getPropagated() const;
    /// Same name (ignoring case), value, flavors and propagation.
    Boolean identical(const CIMConstQualifier& x) const;
    /// A deep copy.
    CIMQualifier clone() const;

  protected:
    using CIMReads::CIMReads;
    ~CIMQualifierReads() = default;
};

/// A qualifier: name, value, flavors, and whether it was propagated from a superclass.
///
/// Copies share one representation: what is changed through one is seen through all; clone() makes
/// an independent one. A default-constructed object is uninitialized: all operations but
/// isUninitialized() and assignment throw UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMQualifier : public CIMQualifierReads {
  public:
    CIMQualifier() = default;

    /// Throws UninitializedObjectException if `name` is null.
    CIMQualifier(const CIMName& name, const CIMValue& value,
                 const CIMFlavor& flavor = CIMFlavor(CIMFlavor::NONE), Boolean propagated = false);

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

  private:
    friend class RepAccess;
    explicit CIMQualifier(std::shared_ptr<CIMQualifierRep> rep)
        : CIMQualifierReads(std::move(rep)) {}
};

/// A CIMQualifier that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstQualifier : public CIMQualifierReads {
  public:
    CIMConstQualifier() = default;
    CIMConstQualifier(const CIMQualifier& x) : CIMQualifierReads(x) {}
    /// Throws UninitializedObjectException if `name` is null.
    CIMConstQualifier(const CIMName& name, const CIMValue& value,
                      const CIMFlavor& flavor = CIMFlavor(CIMFlavor::NONE),
                      Boolean propagated = false)
        : CIMConstQualifier(CIMQualifier(name, value, flavor, propagated)) {}
};

} // namespace Pegasus
