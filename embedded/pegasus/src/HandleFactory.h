// What a CIMOMHandle is made with.
#pragma once

#include "hosting/CIMOMHandleRep.h"

namespace Pegasus::hosting {

/// What the host's factory makes, or null while there is none.
std::shared_ptr<CIMOMHandleRep> makeHandleRep();

} // namespace Pegasus::hosting
