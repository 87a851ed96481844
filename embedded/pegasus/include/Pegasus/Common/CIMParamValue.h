// A parameter of a method's invocation, with its value.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <memory>

namespace Pegasus {

struct CIMParamValueRep;

/// A named value that goes into a method or comes out of it.
///
/// Copies share one representation: what is changed through one is seen through all; clone() makes
/// an independent one. A default-constructed object is uninitialized: all operations but
/// isUninitialized() and assignment throw UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMParamValue {
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
    Boolean isUninitialized() const;

  private:
    friend class RepAccess;
    explicit CIMParamValue(std::shared_ptr<CIMParamValueRep> rep);
    std::shared_ptr<CIMParamValueRep> _rep;
};

} // namespace Pegasus
