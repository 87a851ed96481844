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

namespace Pegasus {

struct CIMQualifierDeclRep;

/// A qualifier type (DSP0004): its name, default value, scope and flavors.
///
/// Nothing changes it but assignment. A default-constructed object is uninitialized: all operations
/// but isUninitialized() and assignment throw UninitializedObjectException.
///
/// Thread-safety: copies may be used in any thread.
class PEGASUS_COMMON_LINKAGE CIMQualifierDecl : public CIMReads<CIMQualifierDeclRep> {
  public:
    CIMQualifierDecl() = default;

    /// `arraySize` is the fixed number of elements of an array value, 0 for any.
    /// Throws UninitializedObjectException if `name` is null.
    CIMQualifierDecl(const CIMName& name, const CIMValue& value, const CIMScope& scope,
                     const CIMFlavor& flavor = CIMFlavor(CIMFlavor::DEFAULTS),
                     Uint32 arraySize = 0);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    /// The default value; its type is that of the qualifier.
    const CIMValue& getValue() const;
    const CIMScope& getScope() const;
    const CIMFlavor& getFlavor() const;
    Uint32 getArraySize() const;
};

} // namespace Pegasus
