// The arrays of the object model's classes.
#include "ArrayImplementation.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMQualifierDecl.h>

namespace Pegasus {

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
