// The declaration of a qualifier type.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMReads.h>
#include <Pegasus/Common/CIMScope.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

#include <memory>
#include <utility>

namespace Pegasus {

class CIMQualifierDecl;
class CIMConstQualifierDecl;
struct CIMQualifierDeclRep;

/// The reads that CIMQualifierDecl and CIMConstQualifierDecl share.
class PEGASUS_COMMON_LINKAGE CIMQualifierDeclReads : public CIMReads<CIMQualifierDeclRep> {
  public:
    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    /// The default value; its type is that of the qualifier.
    const CIMValue& getValue() const;
    const CIMScope& getScope() const;
    const CIMFlavor& getFlavor() const;
    Uint32 getArraySize() const;
    /// Same name (ignoring case), value, scope and array size; the flavors do not count.
    Boolean identical(const CIMConstQualifierDecl& x) const;
    /// A deep copy.
    CIMQualifierDecl clone() const;

  protected:
    using CIMReads::CIMReads;
    ~CIMQualifierDeclReads() = default;
};

/// A qualifier type (DSP0004): its name, default value, scope and flavors.
///
/// Copies share one representation: what is changed through one is seen through all; clone() makes
/// an independent one. A default-constructed object is uninitialized: all operations but
/// isUninitialized() and assignment throw UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMQualifierDecl : public CIMQualifierDeclReads {
  public:
    CIMQualifierDecl() = default;
    CIMQualifierDecl(const CIMQualifierDecl& x) = default;

    /// `arraySize` is the fixed number of elements of an array value, 0 for any.
    /// Throws UninitializedObjectException if `name` is null.
    CIMQualifierDecl(const CIMName& name, const CIMValue& value, const CIMScope& scope,
                     const CIMFlavor& flavor = CIMFlavor(CIMFlavor::DEFAULTS),
                     Uint32 arraySize = 0);
    ~CIMQualifierDecl() = default;
    CIMQualifierDecl& operator=(const CIMQualifierDecl& x) = default;

    /// Throws UninitializedObjectException if `name` is null.
    void setName(const CIMName& name);
    void setValue(const CIMValue& value);

  private:
    friend class RepAccess;
    explicit CIMQualifierDecl(std::shared_ptr<CIMQualifierDeclRep> rep)
        : CIMQualifierDeclReads(std::move(rep)) {}
};

/// A CIMQualifierDecl that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstQualifierDecl : public CIMQualifierDeclReads {
  public:
    CIMConstQualifierDecl() = default;
    CIMConstQualifierDecl(const CIMConstQualifierDecl& x) = default;
    CIMConstQualifierDecl(const CIMQualifierDecl& x) : CIMQualifierDeclReads(x) {}
    /// Throws UninitializedObjectException if `name` is null.
    CIMConstQualifierDecl(const CIMName& name, const CIMValue& value, const CIMScope& scope,
                          const CIMFlavor& flavor = CIMFlavor(CIMFlavor::DEFAULTS),
                          Uint32 arraySize = 0);
    ~CIMConstQualifierDecl() = default;
    CIMConstQualifierDecl& operator=(const CIMConstQualifierDecl& x) = default;
    CIMConstQualifierDecl& operator=(const CIMQualifierDecl& x);
};

} // namespace Pegasus
