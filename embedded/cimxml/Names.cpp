#include "cimxml/Names.h"

#include "cimxml/Rejection.h"
#include "cimxml/Text.h"

#include <array>
#include <string_view>

namespace embedded::cimxml {

using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMType;
using Pegasus::String;

namespace {

[[noreturn]] void rejectValue(const pugi::xml_attribute& attribute) {
    rejectNotValid(std::string(attribute.name()) + " \"" + attribute.value() + "\"");
}

} // namespace

CIMName readName(const pugi::xml_attribute& attribute) {
    const String name = fromUtf8(attribute.value());
    if (!CIMName::legal(name)) {
        rejectValue(attribute);
    }
    return CIMName(name);
}

CIMName readOptionalName(const pugi::xml_attribute& attribute) {
    return attribute ? readName(attribute) : CIMName();
}

CIMType readType(const pugi::xml_attribute& attribute) {
    using namespace Pegasus;
    constexpr std::array<CIMType, 14> types = {
        CIMTYPE_BOOLEAN, CIMTYPE_UINT8,  CIMTYPE_SINT8,  CIMTYPE_UINT16,  CIMTYPE_SINT16,
        CIMTYPE_UINT32,  CIMTYPE_SINT32, CIMTYPE_UINT64, CIMTYPE_SINT64,  CIMTYPE_REAL32,
        CIMTYPE_REAL64,  CIMTYPE_CHAR16, CIMTYPE_STRING, CIMTYPE_DATETIME};
    for (const CIMType type : types) {
        if (std::string_view(attribute.value()) == cimTypeToString(type)) {
            return type;
        }
    }
    rejectValue(attribute);
}

bool readFlag(const pugi::xml_attribute& attribute, bool absent) {
    if (!attribute) {
        return absent;
    }
    const String value = fromUtf8(attribute.value());
    const bool isTrue = String::equalNoCase(value, "true");
    if (!isTrue && !String::equalNoCase(value, "false")) {
        rejectValue(attribute);
    }
    return isTrue;
}

CIMNamespaceName readNamespace(const pugi::xml_node& localNamespacePath) {
    String name;
    for (const pugi::xml_node& part : localNamespacePath.children("NAMESPACE")) {
        if (name.size() != 0) {
            name.append(Pegasus::Char16('/'));
        }
        name.append(fromUtf8(part.attribute("NAME").value()));
    }
    if (!CIMNamespaceName::legal(name)) {
        rejectNotValid("namespace \"" + toUtf8(name) + "\"");
    }
    return CIMNamespaceName(name);
}

} // namespace embedded::cimxml
