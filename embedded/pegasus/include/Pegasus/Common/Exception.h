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
    Exception(const String& message) : _message(message) {}
    Exception(const Exception& exception) = default;
    virtual ~Exception();
    Exception& operator=(const Exception& exception) = default;

    virtual const String& getMessage() const;

  protected:
    Exception() = default;

  private:
    String _message;
};

class PEGASUS_COMMON_LINKAGE IndexOutOfBoundsException : public Exception {
  public:
    IndexOutOfBoundsException() : Exception(String("index out of bounds")) {}
};

class PEGASUS_COMMON_LINKAGE AlreadyExistsException : public Exception {
  public:
    AlreadyExistsException(const String& message) : Exception("already exists: " + message) {}
};

class PEGASUS_COMMON_LINKAGE InvalidNameException : public Exception {
  public:
    InvalidNameException(const String& name) : Exception("The CIM name is not valid: " + name) {}
};

class PEGASUS_COMMON_LINKAGE InvalidNamespaceNameException : public Exception {
  public:
    InvalidNamespaceNameException(const String& name)
        : Exception("invalid CIM namespace name: " + name) {}
};

class PEGASUS_COMMON_LINKAGE UninitializedObjectException : public Exception {
  public:
    UninitializedObjectException() : Exception(String("uninitialized object")) {}
};

class PEGASUS_COMMON_LINKAGE TypeMismatchException : public Exception {
  public:
    TypeMismatchException() : Exception(String("type mismatch")) {}
    TypeMismatchException(const String& message) : Exception("type mismatch: " + message) {}
};

class PEGASUS_COMMON_LINKAGE DynamicCastFailedException : public Exception {
  public:
    DynamicCastFailedException() : Exception(String("dynamic cast failed")) {}
};

class PEGASUS_COMMON_LINKAGE InvalidDateTimeFormatException : public Exception {
  public:
    InvalidDateTimeFormatException() : Exception(String("invalid datetime format")) {}
};

/// A date and time, or a number of microseconds, outside of what CIM can write.
class PEGASUS_COMMON_LINKAGE DateTimeOutOfRangeException : public Exception {
  public:
    DateTimeOutOfRangeException(const String& message)
        : Exception("DateTime is out of range : " + message) {}
};

class PEGASUS_COMMON_LINKAGE MalformedObjectNameException : public Exception {
  public:
    MalformedObjectNameException(const String& objectName)
        : Exception("malformed object name: " + objectName) {}
};

/// An operation of a CIMOMHandle took too long. Not thrown by this host.
class PEGASUS_COMMON_LINKAGE ConnectionTimeoutException : public Exception {
  public:
    ConnectionTimeoutException() : Exception(String("connection timed out")) {}
};

/// A CIM operation failed with a status code. The message is kept exactly as given: it does not
/// contain the name of the code.
class PEGASUS_COMMON_LINKAGE CIMException : public Exception {
  public:
    CIMException(CIMStatusCode code = CIM_ERR_SUCCESS, const String& message = String::EMPTY)
        : Exception(message), _code(code) {}
    CIMException(CIMStatusCode code, const String& message, const CIMInstance& instance);
    CIMException(CIMStatusCode code, const String& message, const Array<CIMInstance>& instances)
        : Exception(message), _code(code), _errors(instances) {}

    CIMStatusCode getCode() const { return _code; }

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
