#pragma once

#include "CIMParameterRep.h"

#include <Pegasus/Common/CIMMethod.h>

namespace Pegasus {

struct CIMMethodRep : NamedElement {
    CIMMethodRep(const CIMName& name, CIMType returnType, const CIMName& origin, bool isPropagated)
        : NamedElement(name), type(returnType), classOrigin(origin), propagated(isPropagated) {}

    bool identical(const CIMMethodRep& x) const {
        return name().equal(x.name()) && type == x.type && qualifiers.identical(x.qualifiers) &&
               parameters.identical(x.parameters);
    }

    CIMType type;
    CIMName classOrigin;
    bool propagated;
    Qualifiers qualifiers;
    NamedElements<CIMParameter> parameters;
};

} // namespace Pegasus
