#include "repository/Types.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace embedded::repository {

namespace {

const std::pair<const char*, Pegasus::CIMType> typeNames[] = {
    {"boolean", Pegasus::CIMTYPE_BOOLEAN}, {"uint8", Pegasus::CIMTYPE_UINT8},
    {"sint8", Pegasus::CIMTYPE_SINT8},     {"uint16", Pegasus::CIMTYPE_UINT16},
    {"sint16", Pegasus::CIMTYPE_SINT16},   {"uint32", Pegasus::CIMTYPE_UINT32},
    {"sint32", Pegasus::CIMTYPE_SINT32},   {"uint64", Pegasus::CIMTYPE_UINT64},
    {"sint64", Pegasus::CIMTYPE_SINT64},   {"real32", Pegasus::CIMTYPE_REAL32},
    {"real64", Pegasus::CIMTYPE_REAL64},   {"char16", Pegasus::CIMTYPE_CHAR16},
    {"string", Pegasus::CIMTYPE_STRING},   {"datetime", Pegasus::CIMTYPE_DATETIME},
    {"ref", Pegasus::CIMTYPE_REFERENCE},
};

} // namespace

std::optional<Pegasus::CIMType> cimType(const std::string& name) {
    const auto* found = std::find_if(std::begin(typeNames), std::end(typeNames),
                                     [&](const auto& row) { return name == row.first; });
    if (found == std::end(typeNames))
        return std::nullopt;
    return found->second;
}

Pegasus::CIMType cimTypeAt(const std::string& name, const mof::Location& where) {
    const auto type = cimType(name);
    if (!type)
        throw mof::MofError(where, "\"" + name + "\" is not a type");
    return *type;
}

Pegasus::CIMName cimNameAt(const std::string& text, const mof::Location& where) {
    try {
        return Pegasus::CIMName(Pegasus::String(text.c_str()));
    } catch (const Pegasus::Exception&) {
        throw mof::MofError(where, "\"" + text + "\" is not a legal CIM name");
    }
}

} // namespace embedded::repository
