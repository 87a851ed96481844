#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/Exception.h>

namespace Pegasus {

Exception::~Exception() = default;

const String& Exception::getMessage() const { return _message; }

CIMException::CIMException(CIMStatusCode code, const String& message, const CIMInstance& instance)
    : CIMException(code, message) {
    addError(instance);
}

Uint32 CIMException::getErrorCount() const { return _errors.size(); }

CIMConstInstance CIMException::getError(Uint32 index) const {
    return CIMConstInstance(_errors[index]);
}

void CIMException::addError(const CIMInstance& instance) { _errors.append(instance); }

} // namespace Pegasus
