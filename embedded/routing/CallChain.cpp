#include "routing/CallChain.h"

#include <Pegasus/Common/Exception.h>

namespace embedded::routing {

using Pegasus::CIMName;
using Pegasus::String;

namespace {
thread_local const ModuleStay* innermost = nullptr;
}

ModuleStay::ModuleStay(const String& module, const CIMName& className)
    : _module(module), _outer(innermost) {
    for (const ModuleStay* stay = innermost; stay != nullptr; stay = stay->_outer) {
        if (stay->_module == module) {
            throw Pegasus::CIMException(Pegasus::CIM_ERR_FAILED,
                                        String("Provider module \"") + module +
                                            String("\" waits for this request itself and cannot be "
                                                   "asked for class ") +
                                            className.getString() + String("."));
        }
    }
    innermost = this;
}

ModuleStay::~ModuleStay() {
    innermost = _outer;
}

} // namespace embedded::routing
