#include "host/Errors.h"

#include <exception>

namespace embedded::host {

using Pegasus::CIM_ERR_FAILED;
using Pegasus::CIMException;

CIMException currentCimException() {
    try {
        throw;
    } catch (const CIMException& error) {
        return CIMException(error.getCode(), error.getMessage());
    } catch (const Pegasus::Exception& error) {
        return CIMException(CIM_ERR_FAILED, error.getMessage());
    } catch (const std::exception& error) {
        return CIMException(CIM_ERR_FAILED, Pegasus::String(error.what()));
    } catch (...) {
        return CIMException(CIM_ERR_FAILED, "Unknown error.");
    }
}

} // namespace embedded::host
