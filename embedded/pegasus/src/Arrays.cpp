// The arrays that providers can use.
#include "ArrayImplementation.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMQualifierDecl.h>

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
template class Array<CIMQualifier>;
template class Array<CIMQualifierDecl>;
template class Array<CIMProperty>;
template class Array<CIMParameter>;
template class Array<CIMMethod>;
template class Array<CIMParamValue>;
template class Array<CIMObject>;
template class Array<CIMInstance>;
template class Array<CIMClass>;

} // namespace Pegasus
