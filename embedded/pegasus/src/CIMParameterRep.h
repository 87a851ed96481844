#pragma once

#include "CIMQualifierRep.h"

#include <Pegasus/Common/CIMParameter.h>

namespace Pegasus {

struct CIMParameterRep : NamedElement {
    /// Throws as the constructor of CIMParameter.
    CIMParameterRep(const CIMName& name, CIMType valueType, bool takesArray, Uint32 fixedArraySize,
                    const CIMName& referenceClass);

    bool identical(const CIMParameterRep& x) const;

    const CIMType type;
    const bool isArray;
    const Uint32 arraySize; // 0: not fixed
    const CIMName referenceClassName;
    Qualifiers qualifiers;
};

} // namespace Pegasus
