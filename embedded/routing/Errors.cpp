#include "routing/Errors.h"

#include "text/Utf8.h"

#include <exception>
#include <string>

namespace embedded::routing {

using namespace Pegasus;

namespace {

// The text is the module's: it may be no UTF-8, of which alone a String can be made.
String message(const std::exception& error) {
    const char* const what = error.what();
    if (what == nullptr || text::findInvalidUtf8(what) == std::string_view::npos)
        return what == nullptr ? "Unknown error." : what;
    return text::visible(what).c_str();
}

} // namespace

CIMException currentCimException() {
    try {
        throw;
    } catch (const CIMException& error) {
        return CIMException(error.getCode(), error.getMessage());
    } catch (const Exception& error) {
        return CIMException(CIM_ERR_FAILED, error.getMessage());
    } catch (const std::exception& error) {
        return CIMException(CIM_ERR_FAILED, message(error));
    } catch (...) {
        return CIMException(CIM_ERR_FAILED, "Unknown error.");
    }
}

} // namespace embedded::routing
