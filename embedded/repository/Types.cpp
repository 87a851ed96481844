#include "repository/Types.h"

#include <Pegasus/Common/Exception.h>

namespace embedded::repository {

using namespace Pegasus;

CIMType cimTypeAt(const std::string& name, const mof::Location& where) {
    if (name == "ref")
        return CIMTYPE_REFERENCE;
    for (int type = CIMTYPE_BOOLEAN; type < CIMTYPE_REFERENCE; ++type)
        if (name == cimTypeToString(static_cast<CIMType>(type)))
            return static_cast<CIMType>(type);
    refuse(where, "\"", name, "\" is not a type");
}

CIMName cimNameAt(const std::string& text, const mof::Location& where) {
    try {
        return CIMName(String(text.c_str()));
    } catch (const Exception&) {
        refuse(where, "\"", text, "\" is not a legal CIM name");
    }
}

} // namespace embedded::repository
