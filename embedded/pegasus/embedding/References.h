// Keys that are references.
#pragma once

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus::embedding {

/// The path in the value of a reference key; the text is parsed only if the key does not keep it.
/// Throws MalformedObjectNameException.
PEGASUS_COMMON_LINKAGE CIMObjectPath referencedPath(const CIMKeyBinding& key);

} // namespace Pegasus::embedding
