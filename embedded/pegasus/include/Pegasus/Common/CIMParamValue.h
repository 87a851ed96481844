// A parameter of a method's invocation, with its value.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMReads.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

struct CIMParamValueRep;

/// A named value that goes into a method or comes out of it; a handle, see CIMReads.
class PEGASUS_COMMON_LINKAGE CIMParamValue : public CIMReads<CIMParamValueRep> {
  public:
    CIMParamValue() = default;

    /// `isTyped` tells whether the type of `value` was stated by whoever sent it. Throws
    /// UninitializedObjectException if `parameterName` is empty.
    CIMParamValue(String parameterName, CIMValue value, Boolean isTyped = true);

    String getParameterName() const;
    CIMValue getValue() const;
    Boolean isTyped() const;
    /// Throws UninitializedObjectException if `parameterName` is empty.
    void setParameterName(String& parameterName);
    void setValue(CIMValue& value);
    void setIsTyped(Boolean isTyped);
    /// A deep copy.
    CIMParamValue clone() const;
};

} // namespace Pegasus
