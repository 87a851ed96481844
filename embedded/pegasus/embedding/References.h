// Keys that are references.
#pragma once

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus::embedding {

/// The path that the value of a reference key says, which is not read again where it is known.
/// Throws MalformedObjectNameException.
PEGASUS_COMMON_LINKAGE CIMObjectPath referencedPath(const CIMKeyBinding& key);

} // namespace Pegasus::embedding
