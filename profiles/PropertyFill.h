// How a value record hands out one of its values as a CIM property.
#pragma once

#include <Pegasus/Common/CIMProperty.h>

namespace serverprofile {

/// Makes `property` the property `name` with `value`: no array size, no reference class, no class
/// of origin, not propagated. Returns true, as the records' getters do.
inline bool fillProperty(Pegasus::CIMProperty& property, const char* name,
                         const Pegasus::CIMValue& value) {
    property = Pegasus::CIMProperty(Pegasus::CIMName(name), value);
    return true;
}

} // namespace serverprofile
