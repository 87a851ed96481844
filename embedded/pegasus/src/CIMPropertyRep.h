#pragma once

#include "CIMQualifierRep.h"

#include <Pegasus/Common/CIMProperty.h>

namespace Pegasus {

struct CIMPropertyRep : NamedElement {
    /// Throws as the constructor of CIMProperty.
    CIMPropertyRep(const CIMName& name, const CIMValue& initialValue, Uint32 fixedArraySize,
                   const CIMName& referenceClass, const CIMName& origin, bool isPropagated);

    bool identical(const CIMPropertyRep& x) const;

    /// Throws as CIMProperty::setValue.
    void setValue(const CIMValue& newValue);

    CIMValue value;
    Uint32 arraySize; // 0: not fixed
    CIMName referenceClassName;
    CIMName classOrigin;
    bool propagated;
    Qualifiers qualifiers;

  private:
    void checkSizeOf(const CIMValue& x) const;
};

} // namespace Pegasus
