// The CIM status codes that providers throw, as exceptions of their own.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/Linkage.h>

namespace Pegasus {

// The texts after the names are those of DSP0200's status codes. The message is the provider's:
// it is kept as given and goes to the client.

/// CIM_ERR_FAILED (1), and the base of the others.
class PEGASUS_PROVIDER_LINKAGE CIMOperationFailedException : public CIMException {
  public:
    CIMOperationFailedException(const String& message);

  protected:
    CIMOperationFailedException(const CIMStatusCode code, const String& message);
};

/// CIM_ERR_ACCESS_DENIED (2)
class PEGASUS_PROVIDER_LINKAGE CIMAccessDeniedException : public CIMOperationFailedException {
  public:
    CIMAccessDeniedException(const String& message);
};

/// CIM_ERR_INVALID_PARAMETER (4)
class PEGASUS_PROVIDER_LINKAGE CIMInvalidParameterException : public CIMOperationFailedException {
  public:
    CIMInvalidParameterException(const String& message);
};

/// CIM_ERR_NOT_FOUND (6)
class PEGASUS_PROVIDER_LINKAGE CIMObjectNotFoundException : public CIMOperationFailedException {
  public:
    CIMObjectNotFoundException(const String& message);
};

/// CIM_ERR_NOT_SUPPORTED (7)
class PEGASUS_PROVIDER_LINKAGE CIMNotSupportedException : public CIMOperationFailedException {
  public:
    CIMNotSupportedException(const String& message);
};

/// CIM_ERR_ALREADY_EXISTS (11)
class PEGASUS_PROVIDER_LINKAGE CIMObjectAlreadyExistsException
    : public CIMOperationFailedException {
  public:
    CIMObjectAlreadyExistsException(const String& message);
};

/// CIM_ERR_NO_SUCH_PROPERTY (12)
class PEGASUS_PROVIDER_LINKAGE CIMPropertyNotFoundException : public CIMOperationFailedException {
  public:
    CIMPropertyNotFoundException(const String& message);
};

/// CIM_ERR_METHOD_NOT_FOUND (17)
class PEGASUS_PROVIDER_LINKAGE CIMMethodNotFoundException : public CIMOperationFailedException {
  public:
    CIMMethodNotFoundException(const String& message);
};

} // namespace Pegasus
