// A method of a class.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMQualified.h>
#include <Pegasus/Common/CIMReads.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <memory>
#include <utility>

namespace Pegasus {

class CIMMethod;
class CIMConstMethod;
struct CIMMethodRep;

/// The reads that CIMMethod and CIMConstMethod share.
class PEGASUS_COMMON_LINKAGE CIMMethodReads : public CIMReads<CIMMethodRep>,
                                              public CIMQualifiedReads<CIMMethodReads> {
  public:
    const CIMName& getName() const;
    /// The type of the return value.
    CIMType getType() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;

    /// The index of the parameter `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findParameter(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getParameterCount().
    CIMConstParameter getParameter(Uint32 index) const;
    Uint32 getParameterCount() const;

    /// Same name (ignoring case), type, qualifiers and parameters; class origin and propagation do
    /// not count.
    Boolean identical(const CIMConstMethod& x) const;
    /// A deep copy, qualifiers and parameters included.
    CIMMethod clone() const;

  protected:
    using CIMReads::CIMReads;
    ~CIMMethodReads() = default;
};

/// The declaration of a method: name, return type, parameters and qualifiers.
///
/// Copies share one representation: what is changed through one is seen through all; clone() makes
/// an independent one. A default-constructed object is uninitialized: all operations but
/// isUninitialized() and assignment throw UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMMethod : public CIMMethodReads, public CIMQualified<CIMMethod> {
  public:
    CIMMethod() = default;

    /// Throws UninitializedObjectException if `name` is null.
    CIMMethod(const CIMName& name, CIMType type, const CIMName& classOrigin = CIMName(),
              Boolean propagated = false);

    /// Throws UninitializedObjectException if `name` is null, and Exception if the method belongs
    /// to a class, in which its name is a key.
    void setName(const CIMName& name);
    void setType(CIMType type);
    void setClassOrigin(const CIMName& classOrigin);
    void setPropagated(Boolean propagated);

    using CIMMethodReads::getQualifier;
    using CIMQualified<CIMMethod>::getQualifier;

    /// Throws AlreadyExistsException if there is a parameter of that name (ignoring case), and
    /// UninitializedObjectException if `x` is uninitialized.
    CIMMethod& addParameter(const CIMParameter& x);
    using CIMMethodReads::getParameter;
    CIMParameter getParameter(Uint32 index);
    /// Throws IndexOutOfBoundsException unless `index` < getParameterCount().
    void removeParameter(Uint32 index);

  private:
    friend class RepAccess;
    explicit CIMMethod(std::shared_ptr<CIMMethodRep> rep) : CIMMethodReads(std::move(rep)) {}
};

/// A CIMMethod that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstMethod : public CIMMethodReads {
  public:
    CIMConstMethod() = default;
    CIMConstMethod(const CIMMethod& x) : CIMMethodReads(x) {}
    /// Throws UninitializedObjectException if `name` is null.
    CIMConstMethod(const CIMName& name, CIMType type, const CIMName& classOrigin = CIMName(),
                   Boolean propagated = false)
        : CIMConstMethod(CIMMethod(name, type, classOrigin, propagated)) {}
};

} // namespace Pegasus
