// The name under which an instance is delivered as an indication.
#pragma once

#include <Pegasus/Common/CIMInstance.h>

namespace Pegasus {

using CIMIndication = CIMInstance;

} // namespace Pegasus
