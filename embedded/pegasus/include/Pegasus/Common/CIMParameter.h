// A parameter of a method's declaration.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMQualified.h>
#include <Pegasus/Common/CIMReads.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus {

class CIMParameter;
class CIMConstParameter;
struct CIMParameterRep;

/// The reads that CIMParameter and CIMConstParameter share. identical() compares name, type,
/// reference class and qualifiers, not whether it is an array, and of which size.
class PEGASUS_COMMON_LINKAGE CIMParameterReads
    : public CIMReads<CIMParameterRep>,
      public CIMQualifiedReads<CIMParameterReads>,
      public CIMCompared<CIMParameterReads, CIMParameter, CIMConstParameter> {
  public:
    CIMParameterReads() = default;
    /// `arraySize` is the fixed number of elements, 0 for any.
    /// Throws UninitializedObjectException if `name` is null, and TypeMismatchException if
    /// `arraySize` is given without `isArray`, if `referenceClassName` is given for another type,
    /// or if it is missing for a reference.
    CIMParameterReads(const CIMName& name, CIMType type, Boolean isArray = false,
                      Uint32 arraySize = 0, const CIMName& referenceClassName = CIMName());

    const CIMName& getName() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    CIMType getType() const;
};

/// The declaration of a method's parameter; a handle, see CIMReads.
class PEGASUS_COMMON_LINKAGE CIMParameter : public CIMQualified<CIMParameter, CIMParameterReads> {
  public:
    using CIMQualified::CIMQualified;

    /// Throws UninitializedObjectException if `name` is null, and Exception if the parameter
    /// belongs to a method, in which its name is a key.
    void setName(const CIMName& name);
};

/// A CIMParameter that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstParameter : public CIMParameterReads {
  public:
    CIMConstParameter() = default;
    CIMConstParameter(const CIMParameter& x) : CIMParameterReads(x) {}
    using CIMParameterReads::CIMParameterReads;
};

} // namespace Pegasus
