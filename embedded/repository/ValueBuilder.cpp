#include "repository/ValueBuilder.h"

#include "repository/Integers.h"
#include "repository/Types.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>

#include <charconv>
#include <limits>
#include <type_traits>

namespace embedded::repository {

using namespace Pegasus;

namespace {

using Kind = mof::Literal::Kind;

struct Context {
    const ValueTarget& target;
    const ReferenceReader& readReference;
};

std::string shown(const mof::Literal& literal) {
    switch (literal.kind) {
    case Kind::Null:
        return "NULL";
    case Kind::Boolean:
        return literal.boolean ? "TRUE" : "FALSE";
    case Kind::Character:
        return "the character '" + literal.text + "'";
    case Kind::String:
        return "the string \"" + literal.text + "\"";
    case Kind::Alias:
        return "the alias " + literal.text;
    case Kind::Integer:
    case Kind::Real:
        break;
    }
    return literal.text;
}

std::string typeName(const Context& context) {
    return context.target.type == CIMTYPE_REFERENCE ? "reference"
                                                    : cimTypeToString(context.target.type);
}

[[noreturn]] void refuseKind(const Context& context, const mof::Literal& literal) {
    refuse(literal.where, context.target.description, ": a ", typeName(context),
           " value is expected, not ", shown(literal));
}

[[noreturn]] void refuseRange(const Context& context, const mof::Literal& literal,
                              const std::string& range) {
    refuse(literal.where, context.target.description, ": ", shown(literal), " does not fit into ",
           typeName(context), " (", range, ")");
}

[[noreturn]] void refuseBecause(const Context& context, const mof::Literal& literal,
                                const Exception& reason) {
    refuse(literal.where, context.target.description, ": ", shown(literal), " is no ",
           typeName(context), " value: ", reason.getMessage());
}

void require(bool isExpected, const Context& context, const mof::Literal& literal) {
    if (!isExpected)
        refuseKind(context, literal);
}

template <class T>
T readInteger(const Context& context, const mof::Literal& literal) {
    require(literal.kind == Kind::Integer, context, literal);
    const auto integer = parseInteger(literal.text);
    const auto value = integer ? narrowed<T>(*integer) : std::nullopt;
    if (!value)
        refuseRange(context, literal,
                    std::to_string(std::numeric_limits<T>::min()) + " to " +
                        std::to_string(std::numeric_limits<T>::max()));
    return *value;
}

template <class T>
T readReal(const Context& context, const mof::Literal& literal) {
    require(literal.kind == Kind::Real || literal.kind == Kind::Integer, context, literal);
    // from_chars knows no plus sign, and unlike strtod no locale either.
    const std::string& text = literal.text;
    const char* begin = text.data() + (text.front() == '+' ? 1 : 0);
    T value{};
    const auto [stopped, error] = std::from_chars(begin, text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range)
        refuseRange(context, literal, "its exponent is too large or too small");
    require(error == std::errc() && stopped == text.data() + text.size(), context, literal);
    return value;
}

String readText(Kind kind, const Context& context, const mof::Literal& literal) {
    require(literal.kind == kind, context, literal);
    try {
        // With its size: '\x0' is a character that a C string would end before.
        return String(literal.text.data(), static_cast<Uint32>(literal.text.size()));
    } catch (const Exception& notUtf8) {
        refuseBecause(context, literal, notUtf8);
    }
}

Char16 readCharacter(const Context& context, const mof::Literal& literal) {
    if (literal.kind == Kind::Integer)
        return Char16(readInteger<Uint16>(context, literal));
    const String text = readText(Kind::Character, context, literal);
    if (text.size() != 1)
        refuseRange(context, literal, "one UTF-16 code unit");
    return text[0];
}

CIMDateTime readDateTime(const Context& context, const mof::Literal& literal) {
    const String text = readText(Kind::String, context, literal);
    try {
        return CIMDateTime(text);
    } catch (const Exception& reason) {
        refuseBecause(context, literal, reason);
    }
}

template <class T>
T read(const Context& context, const mof::Literal& literal) {
    if constexpr (std::is_same_v<T, Boolean>) {
        require(literal.kind == Kind::Boolean, context, literal);
        return literal.boolean;
    } else if constexpr (std::is_integral_v<T>) {
        return readInteger<T>(context, literal);
    } else if constexpr (std::is_floating_point_v<T>) {
        return readReal<T>(context, literal);
    } else if constexpr (std::is_same_v<T, Char16>) {
        return readCharacter(context, literal);
    } else if constexpr (std::is_same_v<T, String>) {
        return readText(Kind::String, context, literal);
    } else if constexpr (std::is_same_v<T, CIMDateTime>) {
        return readDateTime(context, literal);
    } else {
        const bool saysPath = literal.kind == Kind::Alias || literal.kind == Kind::String;
        require(saysPath && context.readReference, context, literal);
        return context.readReference(literal);
    }
}

template <class T>
CIMValue valueOf(const Context& context, const mof::Value& value) {
    if (!context.target.isArray)
        return CIMValue(read<T>(context, value.items.front()));
    Array<T> elements;
    for (const mof::Literal& literal : value.items)
        elements.append(read<T>(context, literal));
    return CIMValue(elements);
}

using Builder = CIMValue (*)(const Context&, const mof::Value&);

/// By CIMType, whose values count from 0 in this order (CIMType.h).
const Builder builders[] = {
    valueOf<Boolean>, valueOf<Uint8>,       valueOf<Sint8>,         valueOf<Uint16>,
    valueOf<Sint16>,  valueOf<Uint32>,      valueOf<Sint32>,        valueOf<Uint64>,
    valueOf<Sint64>,  valueOf<Real32>,      valueOf<Real64>,        valueOf<Char16>,
    valueOf<String>,  valueOf<CIMDateTime>, valueOf<CIMObjectPath>,
};

bool isNull(const mof::Value& value) {
    return !value.isArray && value.items.front().kind == Kind::Null;
}

void checkShape(const mof::Value& value, const ValueTarget& target) {
    if (value.isArray && !target.isArray)
        refuse(value.where, target.description,
               " is no array: one value without braces is expected");
    if (!value.isArray && target.isArray)
        refuse(value.where, target.description, " is an array: its values stand in braces");
    if (target.arraySize != 0 && value.items.size() != target.arraySize)
        refuse(value.where, target.description, " has ", target.arraySize, " elements, not ",
               value.items.size());
    for (const mof::Literal& literal : value.items)
        if (literal.kind == Kind::Null)
            refuse(literal.where, target.description, ": NULL cannot stand in an array");
}

} // namespace

CIMValue nullValue(const ValueTarget& target) {
    return CIMValue(target.type, target.isArray, target.arraySize);
}

CIMValue buildValue(const mof::Value& value, const ValueTarget& target,
                    const ReferenceReader& readReference) {
    if (isNull(value))
        return nullValue(target);
    checkShape(value, target);
    return builders[target.type](Context{target, readReference}, value);
}

} // namespace embedded::repository
