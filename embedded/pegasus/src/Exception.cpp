#include <Pegasus/Common/Exception.h>

namespace Pegasus {

Exception::Exception() = default;
Exception::Exception(const String& message) : _message(message) {
}
Exception::Exception(const Exception& exception) = default;
Exception::~Exception() = default;
Exception& Exception::operator=(const Exception& exception) = default;

const String& Exception::getMessage() const {
    return _message;
}

IndexOutOfBoundsException::IndexOutOfBoundsException() : Exception(String("index out of bounds")) {
}

AlreadyExistsException::AlreadyExistsException(const String& message)
    : Exception("already exists: " + message) {
}

InvalidNameException::InvalidNameException(const String& name)
    : Exception("The CIM name is not valid: " + name) {
}

InvalidNamespaceNameException::InvalidNamespaceNameException(const String& name)
    : Exception("invalid CIM namespace name: " + name) {
}

UninitializedObjectException::UninitializedObjectException()
    : Exception(String("uninitialized object")) {
}

TypeMismatchException::TypeMismatchException() : Exception(String("type mismatch")) {
}

TypeMismatchException::TypeMismatchException(const String& message)
    : Exception("type mismatch: " + message) {
}

DynamicCastFailedException::DynamicCastFailedException()
    : Exception(String("dynamic cast failed")) {
}

InvalidDateTimeFormatException::InvalidDateTimeFormatException()
    : Exception(String("invalid datetime format")) {
}

DateTimeOutOfRangeException::DateTimeOutOfRangeException(const String& message)
    : Exception("DateTime is out of range : " + message) {
}

MalformedObjectNameException::MalformedObjectNameException(const String& objectName)
    : Exception("malformed object name: " + objectName) {
}

BindFailedException::BindFailedException(const String& message)
    : Exception("Bind failed: " + message) {
}

InvalidLocatorException::InvalidLocatorException(const String& locator)
    : Exception("Invalid locator: " + locator) {
}

CannotCreateSocketException::CannotCreateSocketException()
    : Exception(String("Cannot create socket")) {
}

CannotConnectException::CannotConnectException(const String& message) : Exception(message) {
}

AlreadyConnectedException::AlreadyConnectedException() : Exception(String("already connected")) {
}

NotConnectedException::NotConnectedException() : Exception(String("not connected")) {
}

ConnectionTimeoutException::ConnectionTimeoutException()
    : Exception(String("connection timed out")) {
}

// The spelling is what callers know.
InvalidEnumerationContextException::InvalidEnumerationContextException()
    : Exception(String("Invalid Enumeration Context, uninitilialized")) {
}

SSLException::SSLException(const String& message) : Exception("SSL Exception: " + message) {
}

} // namespace Pegasus
