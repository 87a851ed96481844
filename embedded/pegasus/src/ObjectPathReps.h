// The representations behind CIMKeyBinding and CIMObjectPath.
#pragma once

#include "Shared.h"

#include <Pegasus/Common/CIMObjectPath.h>

namespace Pegasus {

struct CIMKeyBindingRep : Shared {
    CIMName name;
    String value;
    CIMKeyBinding::Type type = CIMKeyBinding::BOOLEAN;
};

struct CIMObjectPathRep : Shared {
    String host;
    CIMNamespaceName nameSpace;
    CIMName className;
    Array<CIMKeyBinding> keyBindings;
};

} // namespace Pegasus
