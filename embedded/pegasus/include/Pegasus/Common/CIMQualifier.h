// A qualifier on a class, property, method or parameter.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

#include <memory>

namespace Pegasus {

class CIMConstQualifier;
struct CIMQualifierRep;

/// A qualifier: name, value, flavors, and whether it was propagated from a superclass.
///
/// Copies share one representation: what is changed through one is seen through all; clone() makes
/// an independent one. A default-constructed object is uninitialized: all operations but
/// isUninitialized() and assignment throw UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMQualifier {
  public:
    CIMQualifier() = default;
    CIMQualifier(const CIMQualifier& x) = default;

    /// Throws UninitializedObjectException if `name` is null.
    CIMQualifier(const CIMName& name, const CIMValue& value,
                 const CIMFlavor& flavor = CIMFlavor(CIMFlavor::NONE), Boolean propagated = false);
    ~CIMQualifier() = default;
    CIMQualifier& operator=(const CIMQualifier& x) = default;

    const CIMName& getName() const;
    /// Throws UninitializedObjectException if `name` is null, and Exception if the qualifier
    /// belongs to an element, in which its name is a key.
    void setName(const CIMName& name);
    /// The type of the value.
    CIMType getType() const;
    /// Whether the value is an array.
    Boolean isArray() const;
    const CIMValue& getValue() const;
    /// Any value is taken, of whatever type.
    void setValue(const CIMValue& value);
    /// `flavor` takes the place of the flavors so far.
    void setFlavor(const CIMFlavor& flavor);
    /// Takes `flavor` out of the flavors.
    void unsetFlavor(const CIMFlavor& flavor);
    const CIMFlavor& getFlavor() const;
    /// 1 if propagated from a superclass, else 0.
    Uint32 getPropagated() const;
    void setPropagated(Boolean propagated);
    Boolean isUninitialized() const;
    /// Same name (ignoring case), value, flavors and propagation.
    Boolean identical(const CIMConstQualifier& x) const;
    /// A deep copy.
    CIMQualifier clone() const;

  private:
    friend class RepAccess;
    explicit CIMQualifier(std::shared_ptr<CIMQualifierRep> rep);
    std::shared_ptr<CIMQualifierRep> _rep;
};

/// A CIMQualifier that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstQualifier {
  public:
    CIMConstQualifier() = default;
    CIMConstQualifier(const CIMConstQualifier& x) = default;
    CIMConstQualifier(const CIMQualifier& x);
    /// Throws UninitializedObjectException if `name` is null.
    CIMConstQualifier(const CIMName& name, const CIMValue& value,
                      const CIMFlavor& flavor = CIMFlavor(CIMFlavor::NONE),
                      Boolean propagated = false);
    ~CIMConstQualifier() = default;
    CIMConstQualifier& operator=(const CIMConstQualifier& x) = default;
    CIMConstQualifier& operator=(const CIMQualifier& x);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMFlavor& getFlavor() const;
    Uint32 getPropagated() const;
    Boolean isUninitialized() const;
    Boolean identical(const CIMConstQualifier& x) const;
    /// A deep copy, which can be changed.
    CIMQualifier clone() const;

  private:
    friend class RepAccess;
    std::shared_ptr<const CIMQualifierRep> _rep;
};

} // namespace Pegasus
