// The CIM status codes that providers throw, as exceptions of their own.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/Linkage.h>

namespace Pegasus {

// The message is the provider's: it is kept as given and goes to the client.

/// CIM_ERR_FAILED, and the base of the others.
class PEGASUS_PROVIDER_LINKAGE CIMOperationFailedException : public CIMException {
  public:
    CIMOperationFailedException(const String& message) : CIMException(CIM_ERR_FAILED, message) {}

  protected:
    CIMOperationFailedException(const CIMStatusCode code, const String& message)
        : CIMException(code, message) {}
};

class PEGASUS_PROVIDER_LINKAGE CIMAccessDeniedException : public CIMOperationFailedException {
  public:
    CIMAccessDeniedException(const String& message)
        : CIMOperationFailedException(CIM_ERR_ACCESS_DENIED, message) {}
};

class PEGASUS_PROVIDER_LINKAGE CIMInvalidParameterException : public CIMOperationFailedException {
  public:
    CIMInvalidParameterException(const String& message)
        : CIMOperationFailedException(CIM_ERR_INVALID_PARAMETER, message) {}
};

class PEGASUS_PROVIDER_LINKAGE CIMObjectNotFoundException : public CIMOperationFailedException {
  public:
    CIMObjectNotFoundException(const String& message)
        : CIMOperationFailedException(CIM_ERR_NOT_FOUND, message) {}
};

class PEGASUS_PROVIDER_LINKAGE CIMNotSupportedException : public CIMOperationFailedException {
  public:
    CIMNotSupportedException(const String& message)
        : CIMOperationFailedException(CIM_ERR_NOT_SUPPORTED, message) {}
};

class PEGASUS_PROVIDER_LINKAGE CIMObjectAlreadyExistsException
    : public CIMOperationFailedException {
  public:
    CIMObjectAlreadyExistsException(const String& message)
        : CIMOperationFailedException(CIM_ERR_ALREADY_EXISTS, message) {}
};

class PEGASUS_PROVIDER_LINKAGE CIMPropertyNotFoundException : public CIMOperationFailedException {
  public:
    CIMPropertyNotFoundException(const String& message)
        : CIMOperationFailedException(CIM_ERR_NO_SUCH_PROPERTY, message) {}
};

class PEGASUS_PROVIDER_LINKAGE CIMMethodNotFoundException : public CIMOperationFailedException {
  public:
    CIMMethodNotFoundException(const String& message)
        : CIMOperationFailedException(CIM_ERR_METHOD_NOT_FOUND, message) {}
};

} // namespace Pegasus
