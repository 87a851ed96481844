// Reads class definitions from the CIM server and makes instances from them.
#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Provider/CIMOMHandle.h>

/// Reads the class `className` of `nameSpace` through `cimom`: with its inherited elements, without
/// class origins, with qualifiers if `includeQualifiers`.
/// Throws CIMException CIM_ERR_NOT_FOUND with an empty message when the server answers with a
/// CIMException; other exceptions of the handle pass.
Pegasus::CIMClass _getClassFromCIMOM(Pegasus::CIMOMHandle& cimom,
                                     Pegasus::CIMNamespaceName& nameSpace,
                                     Pegasus::CIMName& className, bool includeQualifiers);

/// An instance of `className` as "root/cimv2" defines it: the name as the definition spells it, all
/// qualifiers of the class, and those of its properties that the module sets, with the class's
/// defaults as values. A property that the class does not define is left out. Throws as
/// _getClassFromCIMOM.
Pegasus::CIMInstance _instAddQualifieres(Pegasus::CIMOMHandle& cimom, Pegasus::CIMName className);

namespace serverprofile {

/// Sets the property `name` of `instance` if the instance has it. Returns whether it has.
/// Throws TypeMismatchException when the class declares the property with another type.
bool setIfDefined(Pegasus::CIMInstance& instance, const char* name, const Pegasus::CIMValue& value);

/// As setIfDefined for an array of the one element `element`, after tracing the CIM type that the
/// class declares for the property.
void setTypedArray(Pegasus::CIMInstance& instance, const char* name, Pegasus::Uint16 element);

} // namespace serverprofile
