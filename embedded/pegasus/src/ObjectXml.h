#pragma once

#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

/// The object as the INSTANCE or CLASS element of CIM-XML (DSP0201), for CIMObject::toString() and
/// CIMValue::toString(): for people, not for the wire.
String objectXml(const CIMConstObject& object);

} // namespace Pegasus
