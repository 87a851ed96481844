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

#include <memory>
#include <utility>

namespace Pegasus {

class CIMProperty;
class CIMConstProperty;
struct CIMPropertyRep;

/// The reads that CIMProperty and CIMConstProperty share.
class PEGASUS_COMMON_LINKAGE CIMPropertyReads : public CIMReads<CIMPropertyRep>,
                                                public CIMQualifiedReads<CIMPropertyReads> {
  public:
    const CIMName& getName() const;
    const CIMValue& getValue() const;
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    /// Null if the property is no reference, or was made without a class.
    const CIMName& getReferenceClassName() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;

    /// Same name (ignoring case), value, reference class, class origin, propagation and
    /// qualifiers; the fixed array size does not count.
    Boolean identical(const CIMConstProperty& x) const;
    /// A deep copy, qualifiers included, which belongs to no container.
    CIMProperty clone() const;

  protected:
    using CIMReads::CIMReads;
    ~CIMPropertyReads() = default;
};

/// A property: name, value, qualifiers, and where it comes from.
///
/// Copies share one representation, also with the instance or class that the property was added to
/// or taken from: what is changed through one is seen through all. clone() makes an independent
/// one, which is wanted before a class's property is given to an instance. A default-constructed
/// object is uninitialized: all operations but isUninitialized() and assignment throw
/// UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMProperty : public CIMPropertyReads,
                                           public CIMQualified<CIMProperty> {
  public:
    CIMProperty() = default;

    /// `arraySize` is the fixed number of elements, 0 for any. A reference may leave out
    /// `referenceClassName` when the property is meant for an instance.
    ///
    /// Throws UninitializedObjectException if `name` is null; TypeMismatchException if `arraySize`
    /// is not 0 and `value` is not an array of that size, if `value` is an array of references, or
    /// if `referenceClassName` is given for a value that is no reference.
    CIMProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize = 0,
                const CIMName& referenceClassName = CIMName(),
                const CIMName& classOrigin = CIMName(), Boolean propagated = false);

    /// Throws UninitializedObjectException if `name` is null, and Exception if the property
    /// belongs to a class or an instance, in which its name is a key.
    void setName(const CIMName& name);
    /// Throws TypeMismatchException unless `value` has the type and arrayness of the present one,
    /// and, for an array of fixed size, that size; also for an array of references.
    void setValue(const CIMValue& value);
    void setClassOrigin(const CIMName& classOrigin);
    void setPropagated(Boolean propagated);

    using CIMPropertyReads::getQualifier;
    using CIMQualified<CIMProperty>::getQualifier;

  private:
    friend class RepAccess;
    explicit CIMProperty(std::shared_ptr<CIMPropertyRep> rep) : CIMPropertyReads(std::move(rep)) {}
};

/// A CIMProperty that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstProperty : public CIMPropertyReads {
  public:
    CIMConstProperty() = default;
    CIMConstProperty(const CIMProperty& x) : CIMPropertyReads(x) {}
    /// Throws as the constructor of CIMProperty.
    CIMConstProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize = 0,
                     const CIMName& referenceClassName = CIMName(),
                     const CIMName& classOrigin = CIMName(), Boolean propagated = false)
        : CIMConstProperty(
              CIMProperty(name, value, arraySize, referenceClassName, classOrigin, propagated)) {}
};

} // namespace Pegasus
