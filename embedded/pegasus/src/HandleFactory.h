// What a CIMOMHandle is made with.
#pragma once

#include "embedding/CIMOMHandleRep.h"

namespace Pegasus::embedding {

/// What the host's factory makes, or null while there is none.
std::shared_ptr<CIMOMHandleRep> makeHandleRep();

} // namespace Pegasus::embedding
