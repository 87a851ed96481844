#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

class CIMInstance;
class CIMConstInstance;

/// The base of everything this library throws. Not a std::exception.
class PEGASUS_COMMON_LINKAGE Exception {
  public:
    Exception(const String& message);
    Exception(const Exception& exception);
    virtual ~Exception();
    Exception& operator=(const Exception& exception);

    virtual const String& getMessage() const;

  protected:
    Exception();

  private:
    String _message;
};

/// "index out of bounds"
class PEGASUS_COMMON_LINKAGE IndexOutOfBoundsException : public Exception {
  public:
    IndexOutOfBoundsException();
};

/// "already exists: <message>"
class PEGASUS_COMMON_LINKAGE AlreadyExistsException : public Exception {
  public:
    AlreadyExistsException(const String& message);
};

/// "The CIM name is not valid: <name>"
class PEGASUS_COMMON_LINKAGE InvalidNameException : public Exception {
  public:
    InvalidNameException(const String& name);
};

/// "invalid CIM namespace name: <name>"
class PEGASUS_COMMON_LINKAGE InvalidNamespaceNameException : public Exception {
  public:
    InvalidNamespaceNameException(const String& name);
};

/// "uninitialized object"
class PEGASUS_COMMON_LINKAGE UninitializedObjectException : public Exception {
  public:
    UninitializedObjectException();
};

/// "type mismatch" or "type mismatch: <message>"
class PEGASUS_COMMON_LINKAGE TypeMismatchException : public Exception {
  public:
    TypeMismatchException();
    TypeMismatchException(const String& message);
};

/// "dynamic cast failed"
class PEGASUS_COMMON_LINKAGE DynamicCastFailedException : public Exception {
  public:
    DynamicCastFailedException();
};

/// "invalid datetime format"
class PEGASUS_COMMON_LINKAGE InvalidDateTimeFormatException : public Exception {
  public:
    InvalidDateTimeFormatException();
};

/// A date and time, or a number of microseconds, outside of what CIM can write.
class PEGASUS_COMMON_LINKAGE DateTimeOutOfRangeException : public Exception {
  public:
    DateTimeOutOfRangeException(const String& message);
};

/// "malformed object name: <objectName>"
class PEGASUS_COMMON_LINKAGE MalformedObjectNameException : public Exception {
  public:
    MalformedObjectNameException(const String& objectName);
};

class PEGASUS_COMMON_LINKAGE BindFailedException : public Exception {
  public:
    BindFailedException(const String& message);
};

class PEGASUS_COMMON_LINKAGE InvalidLocatorException : public Exception {
  public:
    InvalidLocatorException(const String& locator);
};

class PEGASUS_COMMON_LINKAGE CannotCreateSocketException : public Exception {
  public:
    CannotCreateSocketException();
};

class PEGASUS_COMMON_LINKAGE CannotConnectException : public Exception {
  public:
    CannotConnectException(const String& message);
};

class PEGASUS_COMMON_LINKAGE AlreadyConnectedException : public Exception {
  public:
    AlreadyConnectedException();
};

class PEGASUS_COMMON_LINKAGE NotConnectedException : public Exception {
  public:
    NotConnectedException();
};

class PEGASUS_COMMON_LINKAGE ConnectionTimeoutException : public Exception {
  public:
    ConnectionTimeoutException();
};

class PEGASUS_COMMON_LINKAGE InvalidEnumerationContextException : public Exception {
  public:
    InvalidEnumerationContextException();
};

class PEGASUS_COMMON_LINKAGE SSLException : public Exception {
  public:
    SSLException(const String& message);
};

/// A CIM operation failed with a status code. The message is kept exactly as given: it does not
/// contain the name of the code.
class PEGASUS_COMMON_LINKAGE CIMException : public Exception {
  public:
    CIMException(CIMStatusCode code = CIM_ERR_SUCCESS, const String& message = String::EMPTY);
    CIMException(CIMStatusCode code, const String& message, const CIMInstance& instance);
    CIMException(CIMStatusCode code, const String& message, const Array<CIMInstance>& instances);
    CIMException(const CIMException& cimException);
    CIMException& operator=(const CIMException& cimException);
    ~CIMException() override;

    CIMStatusCode getCode() const;

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    Uint32 getErrorCount() const;
    /// Throws IndexOutOfBoundsException.
    CIMConstInstance getError(Uint32 index) const;
    void addError(const CIMInstance& instance);
#endif

  private:
    CIMStatusCode _code;
    Array<CIMInstance> _errors;
};

} // namespace Pegasus
