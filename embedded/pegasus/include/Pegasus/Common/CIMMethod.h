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

namespace Pegasus {

class CIMMethod;
class CIMConstMethod;
struct CIMMethodRep;

/// The reads that CIMMethod and CIMConstMethod share. identical() compares name, type, qualifiers
/// and parameters, not class origin and propagation.
class PEGASUS_COMMON_LINKAGE CIMMethodReads
    : public CIMReads<CIMMethodRep>,
      public CIMQualifiedReads<CIMMethodReads>,
      public CIMCompared<CIMMethodReads, CIMMethod, CIMConstMethod> {
  public:
    CIMMethodReads() = default;
    /// Throws UninitializedObjectException if `name` is null.
    CIMMethodReads(const CIMName& name, CIMType type, const CIMName& classOrigin = CIMName(),
                   Boolean propagated = false);

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
};

/// The declaration of a method: name, return type, parameters and qualifiers; a handle, see
/// CIMReads.
class PEGASUS_COMMON_LINKAGE CIMMethod : public CIMQualified<CIMMethod, CIMMethodReads> {
  public:
    using CIMQualified::CIMQualified;

    /// Throws UninitializedObjectException if `name` is null, and Exception if the method belongs
    /// to a class, in which its name is a key.
    void setName(const CIMName& name);
    void setType(CIMType type);
    void setClassOrigin(const CIMName& classOrigin);
    void setPropagated(Boolean propagated);

    /// Throws AlreadyExistsException if there is a parameter of that name (ignoring case), and
    /// UninitializedObjectException if `x` is uninitialized.
    CIMMethod& addParameter(const CIMParameter& x);
    using CIMMethodReads::getParameter;
    CIMParameter getParameter(Uint32 index);
    /// Throws IndexOutOfBoundsException unless `index` < getParameterCount().
    void removeParameter(Uint32 index);
};

/// A CIMMethod that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstMethod : public CIMMethodReads {
  public:
    CIMConstMethod() = default;
    CIMConstMethod(const CIMMethod& x) : CIMMethodReads(x) {}
    using CIMMethodReads::CIMMethodReads;
};

} // namespace Pegasus
