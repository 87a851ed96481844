#include "cimxml/Names.h"

#include "cimxml/Rejection.h"
#include "embedding/Text.h"

#include <charconv>
#include <string_view>

namespace embedded::cimxml {

using namespace Pegasus;
using namespace Pegasus::embedding;

namespace {

[[noreturn]] void rejectValue(const Attribute& attribute) {
    rejectNotValid(std::string(attribute.name) + " \"" + std::string(attribute.value) + "\"");
}

} // namespace

CIMName readName(const Attribute& attribute) {
    const String name = fromUtf8(attribute.value);
    if (!CIMName::legal(name))
        rejectValue(attribute);
    return CIMName(name);
}

CIMName readOptionalName(const Attribute& attribute) {
    return attribute ? readName(attribute) : CIMName();
}

CIMType readType(const Attribute& attribute) {
    for (int i = CIMTYPE_BOOLEAN; i <= CIMTYPE_DATETIME; ++i)
        if (const auto type = CIMType(i); attribute.value == cimTypeToString(type))
            return type;
    rejectValue(attribute);
}

bool readFlag(const Attribute& attribute, bool absent) {
    if (!attribute)
        return absent;
    const String value = fromUtf8(attribute.value);
    const bool isTrue = String::equalNoCase(value, "true");
    if (!isTrue && !String::equalNoCase(value, "false"))
        rejectValue(attribute);
    return isTrue;
}

std::optional<Uint32> readUint32(std::string_view text) {
    Uint32 number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

CIMNamespaceName readNamespace(const Element& localNamespacePath) {
    String name;
    for (const Element& part : localNamespacePath.children("NAMESPACE")) {
        if (name.size() != 0)
            name.append(Char16('/'));
        name.append(fromUtf8(part.attribute("NAME").value));
    }
    if (!CIMNamespaceName::legal(name))
        rejectNotValid("namespace \"" + utf8(name) + "\"");
    return CIMNamespaceName(name);
}

} // namespace embedded::cimxml
