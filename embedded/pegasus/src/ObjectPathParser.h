#pragma once

#include <Pegasus/Common/CIMObjectPath.h>

namespace Pegasus {

/// Reads the text form of an object path; see CIMObjectPath. The key bindings come in the order
/// of the text, and the values of references as CIMObjectPath::toString() writes them. Throws
/// MalformedObjectNameException.
void parseObjectPath(const String& text, String& host, CIMNamespaceName& nameSpace,
                     CIMName& className, Array<CIMKeyBinding>& keyBindings);

/// Throws MalformedObjectNameException with the text and, in quotes, the reason.
[[noreturn]] void rejectObjectPath(const String& text, const String& reason);

} // namespace Pegasus
