// A parameter of a method's declaration.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMQualified.h>
#include <Pegasus/Common/CIMReads.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

#include <memory>
#include <utility>

namespace Pegasus {

class CIMParameter;
class CIMConstParameter;
struct CIMParameterRep;

/// The reads that CIMParameter and CIMConstParameter share.
class PEGASUS_COMMON_LINKAGE CIMParameterReads : public CIMReads<CIMParameterRep>,
                                                 public CIMQualifiedReads<CIMParameterReads> {
  public:
    const CIMName& getName() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    CIMType getType() const;

    /// Same name (ignoring case), type, reference class and qualifiers; whether it is an array, and
    /// of which size, does not count.
    Boolean identical(const CIMConstParameter& x) const;
    /// A deep copy, qualifiers included.
    CIMParameter clone() const;

  protected:
    using CIMReads::CIMReads;
    ~CIMParameterReads() = default;
};

/// The declaration of a method's parameter.
///
/// Copies share one representation: what is changed through one is seen through all; clone() makes
/// an independent one. A default-constructed object is uninitialized: all operations but
/// isUninitialized() and assignment throw UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMParameter : public CIMParameterReads,
                                            public CIMQualified<CIMParameter> {
  public:
    CIMParameter() = default;

    /// `arraySize` is the fixed number of elements, 0 for any.
    /// Throws UninitializedObjectException if `name` is null, and TypeMismatchException if
    /// `arraySize` is given without `isArray`, if `referenceClassName` is given for another type,
    /// or if it is missing for a reference.
    CIMParameter(const CIMName& name, CIMType type, Boolean isArray = false, Uint32 arraySize = 0,
                 const CIMName& referenceClassName = CIMName());

    /// Throws UninitializedObjectException if `name` is null, and Exception if the parameter
    /// belongs to a method, in which its name is a key.
    void setName(const CIMName& name);

    using CIMParameterReads::getQualifier;
    using CIMQualified<CIMParameter>::getQualifier;

  private:
    friend class RepAccess;
    explicit CIMParameter(std::shared_ptr<CIMParameterRep> rep)
        : CIMParameterReads(std::move(rep)) {}
};

/// A CIMParameter that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstParameter : public CIMParameterReads {
  public:
    CIMConstParameter() = default;
    CIMConstParameter(const CIMParameter& x) : CIMParameterReads(x) {}
    /// Throws as the constructor of CIMParameter.
    CIMConstParameter(const CIMName& name, CIMType type, Boolean isArray = false,
                      Uint32 arraySize = 0, const CIMName& referenceClassName = CIMName())
        : CIMConstParameter(CIMParameter(name, type, isArray, arraySize, referenceClassName)) {}
};

} // namespace Pegasus
