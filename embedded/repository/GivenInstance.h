// Checks and completes the instances that clients send.
//
// Errors are Pegasus::CIMException: CIM_ERR_INVALID_PARAMETER for a value of another type than the
// property's, and those named below.
#pragma once

#include "repository/ClassForm.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMPropertyList.h>

namespace embedded::repository {

/// `given` with the class's defaults for what it leaves out, and with its path.
/// CIM_ERR_INVALID_PARAMETER for a property that the class does not have or a key without value.
Ref<Stored> completedInstance(ClassForm& form, const Pegasus::CIMConstInstance& given);

/// `kept` with the values that `given` has for the properties in `list`, or for all that it has if
/// `list` is null (DSP0200 clause 5.3.2.8). A listed property that `given` does not have falls back
/// to the class's default.
/// CIM_ERR_NO_SUCH_PROPERTY "<property>" for one that the class does not have,
/// CIM_ERR_INVALID_PARAMETER for a key with another value than before.
Ref<Stored> modifiedInstance(ClassForm& form, const Stored& kept,
                             const Pegasus::CIMConstInstance& given,
                             const Pegasus::CIMPropertyList& list);

} // namespace embedded::repository
