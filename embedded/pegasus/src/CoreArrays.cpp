// The arrays of the value types. Those of the object model stand with it.
#include "ArrayImplementation.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>

namespace Pegasus {

template class Array<Boolean>;
template class Array<Uint8>;
template class Array<Sint8>;
template class Array<Uint16>;
template class Array<Sint16>;
template class Array<Uint32>;
template class Array<Sint32>;
template class Array<Uint64>;
template class Array<Sint64>;
template class Array<Real32>;
template class Array<Real64>;
template class Array<Char16>;
template class Array<String>;
template class Array<CIMName>;
template class Array<CIMNamespaceName>;
template class Array<CIMDateTime>;
template class Array<CIMKeyBinding>;
template class Array<CIMObjectPath>;
template class Array<CIMValue>;

} // namespace Pegasus
