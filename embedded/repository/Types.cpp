#include "repository/Types.h"

#include <Pegasus/Common/Exception.h>

namespace embedded::repository {

using Pegasus::CIMType;

CIMType cimTypeAt(const std::string& name, const mof::Location& where) {
    if (name == "ref")
        return Pegasus::CIMTYPE_REFERENCE;
    for (int type = Pegasus::CIMTYPE_BOOLEAN; type < Pegasus::CIMTYPE_REFERENCE; ++type)
        if (name == Pegasus::cimTypeToString(static_cast<CIMType>(type)))
            return static_cast<CIMType>(type);
    throw mof::MofError(where, "\"" + name + "\" is not a type");
}

Pegasus::CIMName cimNameAt(const std::string& text, const mof::Location& where) {
    try {
        return Pegasus::CIMName(Pegasus::String(text.c_str()));
    } catch (const Pegasus::Exception&) {
        throw mof::MofError(where, "\"" + text + "\" is not a legal CIM name");
    }
}

} // namespace embedded::repository
