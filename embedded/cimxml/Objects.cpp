#include "cimxml/Objects.h"

#include "embedding/Text.h"
#include "limits/Limits.h"
#include "text/Ascii.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>

#include <array>
#include <charconv>
#include <type_traits>

namespace embedded::cimxml {

using namespace Pegasus;
using namespace Pegasus::embedding;
using text::trimmed;

namespace {

[[noreturn]] void rejectValue(const Attribute& attribute) {
    rejectNotValid(std::string(attribute.name) + " \"" + std::string(attribute.value) + "\"");
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

[[noreturn]] void throwInvalidValue(std::string_view text, const char* type) {
    throwInvalid("Invalid " + std::string(type) + " value \"" + std::string(text) + "\".");
}

// All of `text`, or nothing; `text` has no sign but "-".
template <class Number, class... Format>
bool convert(std::string_view text, Number& number, Format... format) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, format...);
    return error == std::errc() && stop == end;
}

// An optional sign, then decimal digits, or 0x and hexadecimal digits.
template <class Integer>
bool readInteger(std::string_view text, Integer& number) {
    const bool negative = text.substr(0, 1) == "-";
    std::string_view digits = text.substr(negative || text.substr(0, 1) == "+" ? 1 : 0);
    if (digits.substr(0, 1) == "-")
        return false;
    const bool hexadecimal = digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X";
    if (!hexadecimal)
        return convert(negative ? text : digits, number, 10);
    digits.remove_prefix(2);
    if (digits.substr(0, 1) == "-")
        return false;
    return convert(negative ? "-" + std::string(digits) : std::string(digits), number, 16);
}

template <class Real>
bool readReal(std::string_view text, Real& number) {
    const bool plus = text.substr(0, 1) == "+" && text.substr(1, 1) != "-";
    return convert(text.substr(plus ? 1 : 0), number, std::chars_format::general);
}

String readNumberText(std::string_view text) {
    const std::string_view number = trimmed(text);
    Sint64 asSigned = 0;
    Uint64 asUnsigned = 0;
    Real64 asReal = 0;
    if (!readInteger(number, asSigned) && !readInteger(number, asUnsigned) &&
        !readReal(number, asReal))
        throwInvalidValue(text, "numeric");
    return fromUtf8(number);
}

template <class T>
T readScalar(std::string_view text, CIMType type) {
    if constexpr (std::is_same_v<T, Boolean>) {
        return readBoolean(text);
    } else if constexpr (std::is_same_v<T, String>) {
        return fromUtf8(text);
    } else if constexpr (std::is_same_v<T, Char16>) {
        const String character = fromUtf8(text);
        if (character.size() != 1)
            throwInvalidValue(text, cimTypeToString(type));
        return character[0];
    } else if constexpr (std::is_same_v<T, CIMDateTime>) {
        try {
            return CIMDateTime(fromUtf8(trimmed(text)));
        } catch (const Exception&) {
            throwInvalidValue(text, cimTypeToString(type));
        }
    } else {
        T number{};
        bool good = false;
        if constexpr (std::is_floating_point_v<T>)
            good = readReal(trimmed(text), number);
        else
            good = readInteger(trimmed(text), number);
        if (!good)
            throwInvalidValue(text, cimTypeToString(type));
        return number;
    }
}

template <class T>
CIMValue readScalarValue(const Element& value, CIMType type) {
    return CIMValue(readScalar<T>(value.text(), type));
}

template <class T>
CIMValue readArrayValue(const Element& values, CIMType type) {
    Array<T> items;
    for (const Element& value : values.children("VALUE"))
        items.append(readScalar<T>(value.text(), type));
    return CIMValue(items);
}

// What reads a VALUE and a VALUE.ARRAY of a type.
struct ValueReaders {
    CIMValue (*scalar)(const Element& value, CIMType type);
    CIMValue (*array)(const Element& values, CIMType type);
};

template <class... T>
constexpr std::array<ValueReaders, sizeof...(T)> readersOf() {
    return {{{readScalarValue<T>, readArrayValue<T>}...}};
}

// In the order of CIMType; those that a VALUE may have (DSP0201 clause 5.1.1).
constexpr auto valueReaders =
    readersOf<Boolean, Uint8, Sint8, Uint16, Sint16, Uint32, Sint32, Uint64, Sint64, Real32, Real64,
              Char16, String, CIMDateTime>();

void checkMembers(const Element& element) {
    std::size_t count = 0;
    for (Element child = element.child(); child; child = child.nextSibling())
        ++count;
    if (count > limits::members)
        throwInvalid("More than " + std::to_string(limits::members) + " elements in " +
                     std::string(element.name()) + ".");
}

// The path in a VALUE.REFERENCE, of whichever form; a class's path has no keys.
CIMObjectPath readReference(const Element& reference, const SoleKey& soleKey, unsigned depth) {
    if (depth > limits::referenceDepth)
        throwInvalid("References in keys are nested deeper than " +
                     std::to_string(limits::referenceDepth) + ".");
    // VALUE.REFERENCE / [..PATH /] [NAMESPACEPATH / HOST, LOCALNAMESPACEPATH], ..NAME
    Element object = reference.child();
    String host;
    CIMNamespaceName nameSpace;
    if (const Element full = object.child("NAMESPACEPATH")) {
        host = fromUtf8(full.child("HOST").text());
        nameSpace = readNamespace(full.child("LOCALNAMESPACEPATH"));
    } else if (const Element local = object.child("LOCALNAMESPACEPATH")) {
        nameSpace = readNamespace(local);
    }
    if (!nameSpace.isNull())
        object = object.child().nextSibling(); // of two
    const bool isClass = object.name() == "CLASSNAME";
    CIMObjectPath path =
        isClass ? CIMObjectPath(String(), nameSpace, readName(object.attribute("NAME")))
                : readInstanceName(object, soleKey, depth);
    path.setNameSpace(nameSpace);
    path.setHost(host);
    return path;
}

// VALUETYPE names the kind; a TYPE without it implies one.
CIMKeyBinding::Type keyType(const Element& keyValue) {
    if (const Attribute kind = keyValue.attribute("VALUETYPE")) {
        const std::string_view name = kind.value;
        if (name == "string")
            return CIMKeyBinding::STRING;
        if (name == "boolean")
            return CIMKeyBinding::BOOLEAN;
        if (name == "numeric")
            return CIMKeyBinding::NUMERIC;
        rejectNotValid("VALUETYPE \"" + std::string(name) + "\"");
    }
    const Attribute type = keyValue.attribute("TYPE");
    switch (type ? readType(type) : CIMTYPE_STRING) {
    case CIMTYPE_BOOLEAN:
        return CIMKeyBinding::BOOLEAN;
    case CIMTYPE_STRING:
    case CIMTYPE_CHAR16:
    case CIMTYPE_DATETIME:
        return CIMKeyBinding::STRING;
    default:
        return CIMKeyBinding::NUMERIC;
    }
}

CIMKeyBinding readKeyValue(const CIMName& name, const Element& keyValue) {
    const CIMKeyBinding::Type type = keyType(keyValue);
    const std::string_view text = keyValue.text();
    switch (type) {
    case CIMKeyBinding::BOOLEAN:
        return CIMKeyBinding(name, CIMValue(readBoolean(text)));
    case CIMKeyBinding::NUMERIC:
        return CIMKeyBinding(name, readNumberText(text), type);
    default:
        return CIMKeyBinding(name, fromUtf8(text), type);
    }
}

// `holder` has one KEYVALUE or VALUE.REFERENCE.
CIMKeyBinding readKey(const CIMName& name, const Element& holder, const SoleKey& soleKey,
                      unsigned depth) {
    if (const Element keyValue = holder.child("KEYVALUE"))
        return readKeyValue(name, keyValue);
    const CIMObjectPath path = readReference(holder.child("VALUE.REFERENCE"), soleKey, depth + 1);
    if (path.toString().size() > limits::referenceLength)
        throwInvalid("A reference in a key is longer than " +
                     std::to_string(limits::referenceLength) + " characters.");
    return CIMKeyBinding(name, CIMValue(path));
}

// Each with the default that DSP0203 gives it.
struct FlavorAttribute {
    const char* name;
    const CIMFlavor& flavor;
    bool absent;
};

CIMFlavor readFlavor(const Element& element) {
    const FlavorAttribute attributes[] = {{"OVERRIDABLE", CIMFlavor::OVERRIDABLE, true},
                                          {"TOSUBCLASS", CIMFlavor::TOSUBCLASS, true},
                                          {"TOINSTANCE", CIMFlavor::TOINSTANCE, false},
                                          {"TRANSLATABLE", CIMFlavor::TRANSLATABLE, false}};
    CIMFlavor flavor = CIMFlavor::NONE;
    for (const FlavorAttribute& attribute : attributes)
        if (readFlag(element.attribute(attribute.name), attribute.absent))
            flavor.addFlavor(attribute.flavor);
    return flavor;
}

CIMQualifier readQualifier(const Element& element, const SoleKey& soleKey) {
    return CIMQualifier(readName(element.attribute("NAME")),
                        readValue(element, readType(element.attribute("TYPE")), false, soleKey),
                        readFlavor(element), readFlag(element.attribute("PROPAGATED"), false));
}

Uint32 readArraySize(const Attribute& attribute) {
    const std::optional<Uint32> size = readUint32(attribute.value);
    if (attribute && !size)
        rejectNotValid("ARRAYSIZE \"" + std::string(attribute.value) + "\"");
    return size.value_or(0);
}

// PROPERTY, PROPERTY.ARRAY or PROPERTY.REFERENCE.
CIMProperty readProperty(const Element& element, const SoleKey& soleKey) {
    checkMembers(element);
    const std::string_view kind = element.name();
    const bool isReference = kind == "PROPERTY.REFERENCE";
    const CIMType type = isReference ? CIMTYPE_REFERENCE : readType(element.attribute("TYPE"));
    CIMProperty property(readName(element.attribute("NAME")),
                         readValue(element, type, kind == "PROPERTY.ARRAY", soleKey),
                         readArraySize(element.attribute("ARRAYSIZE")),
                         readOptionalName(element.attribute("REFERENCECLASS")),
                         readOptionalName(element.attribute("CLASSORIGIN")),
                         readFlag(element.attribute("PROPAGATED"), false));
    for (const Element& qualifier : element.children("QUALIFIER"))
        property.addQualifier(readQualifier(qualifier, soleKey));
    return property;
}

} // namespace

void throwInvalid(const std::string& message) {
    throw CIMException(CIM_ERR_INVALID_PARAMETER, fromUtf8(message));
}

CIMName readName(const Attribute& attribute) {
    const String name = fromUtf8(attribute.value);
    if (!CIMName::legal(name))
        rejectValue(attribute);
    return CIMName(name);
}

std::optional<Uint32> readUint32(std::string_view text) {
    Uint32 number = 0;
    return convert(text, number) ? std::optional(number) : std::nullopt;
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

bool readBoolean(std::string_view text) {
    const String word = fromUtf8(trimmed(text));
    const bool isTrue = String::equalNoCase(word, "TRUE");
    if (!isTrue && !String::equalNoCase(word, "FALSE"))
        throwInvalidValue(text, "boolean");
    return isTrue;
}

CIMValue readValue(const Element& holder, CIMType type, bool isArray, const SoleKey& soleKey) {
    if (const Element value = holder.child("VALUE"))
        return valueReaders.at(type).scalar(value, type);
    if (const Element values = holder.child("VALUE.ARRAY")) {
        if (values.child("VALUE.NULL"))
            throw CIMException(CIM_ERR_NOT_SUPPORTED, "VALUE.NULL in an array is not supported.");
        return valueReaders.at(type).array(values, type);
    }
    if (const Element reference = holder.child("VALUE.REFERENCE"))
        return CIMValue(readReference(reference, soleKey, 0));
    return CIMValue(type, isArray);
}

CIMObjectPath readInstanceName(const Element& instanceName, const SoleKey& soleKey,
                               unsigned depth) {
    const CIMName className = readName(instanceName.attribute("CLASSNAME"));
    checkMembers(instanceName);
    Array<CIMKeyBinding> keys;
    for (const Element& key : instanceName.children("KEYBINDING"))
        keys.append(readKey(readName(key.attribute("NAME")), key, soleKey, depth));
    if (instanceName.child("KEYVALUE") || instanceName.child("VALUE.REFERENCE"))
        keys.append(readKey(soleKey(className), instanceName, soleKey, depth));
    return CIMObjectPath(String(), CIMNamespaceName(), className, keys);
}

CIMInstance readInstance(const Element& instance, const SoleKey& soleKey) {
    checkMembers(instance);
    CIMInstance result(readName(instance.attribute("CLASSNAME")));
    for (const Element& member : instance.children())
        if (member.name() == "QUALIFIER")
            result.addQualifier(readQualifier(member, soleKey));
        else
            result.addProperty(readProperty(member, soleKey));
    return result;
}

CIMInstance readNamedInstance(const Element& namedInstance, const SoleKey& soleKey) {
    CIMInstance result = readInstance(namedInstance.child("INSTANCE"), soleKey);
    result.setPath(readInstanceName(namedInstance.child("INSTANCENAME"), soleKey));
    return result;
}

} // namespace embedded::cimxml
