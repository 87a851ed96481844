#include <Pegasus/Common/ResponseHandler.h>

namespace Pegasus {

ResponseHandler::ResponseHandler() = default;

ResponseHandler::ResponseHandler(const ResponseHandler& handler) = default;

ResponseHandler::~ResponseHandler() = default;

ResponseHandler& ResponseHandler::operator=(const ResponseHandler& handler) = default;

void ResponseHandler::setContext(const OperationContext& context) {
    _context = context;
}

OperationContext ResponseHandler::getContext() const {
    return _context;
}

} // namespace Pegasus
