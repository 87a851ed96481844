// CIMException carries instances, so it stands above the object model; see Exception.cpp for the
// exceptions below it.
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/Exception.h>

namespace Pegasus {

CIMException::CIMException(CIMStatusCode code, const String& message)
    : Exception(message), _code(code) {
}

CIMException::CIMException(CIMStatusCode code, const String& message, const CIMInstance& instance)
    : Exception(message), _code(code) {
    addError(instance);
}

CIMException::CIMException(CIMStatusCode code, const String& message,
                           const Array<CIMInstance>& instances)
    : Exception(message), _code(code), _errors(instances) {
}

CIMException::CIMException(const CIMException& cimException) = default;
CIMException& CIMException::operator=(const CIMException& cimException) = default;
CIMException::~CIMException() = default;

CIMStatusCode CIMException::getCode() const {
    return _code;
}

Uint32 CIMException::getErrorCount() const {
    return _errors.size();
}

CIMConstInstance CIMException::getError(Uint32 index) const {
    return CIMConstInstance(_errors[index]);
}

void CIMException::addError(const CIMInstance& instance) {
    _errors.append(instance);
}

} // namespace Pegasus
