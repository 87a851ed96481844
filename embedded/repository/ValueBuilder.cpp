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

template <class T>
struct Reader;

template <class T>
struct IntegerReader {
    static T read(const Context& context, const mof::Literal& literal) {
        if (literal.kind != Kind::Integer)
            refuseKind(context, literal);
        const auto integer = parseInteger(literal.text);
        const auto value = integer ? narrowed<T>(*integer) : std::nullopt;
        if (!value)
            refuseRange(context, literal,
                        std::to_string(std::numeric_limits<T>::min()) + " to " +
                            std::to_string(std::numeric_limits<T>::max()));
        return *value;
    }
};

template <class T>
struct RealReader {
    static T read(const Context& context, const mof::Literal& literal) {
        if (literal.kind != Kind::Real && literal.kind != Kind::Integer)
            refuseKind(context, literal);
        // from_chars knows no plus sign, and unlike strtod no locale either.
        const std::string& text = literal.text;
        const char* begin = text.data() + (text.front() == '+' ? 1 : 0);
        T value{};
        const auto [stopped, error] = std::from_chars(begin, text.data() + text.size(), value);
        if (error == std::errc::result_out_of_range)
            refuseRange(context, literal, "its exponent is too large or too small");
        if (error != std::errc() || stopped != text.data() + text.size())
            refuseKind(context, literal);
        return value;
    }
};

template <>
struct Reader<Uint8> : IntegerReader<Uint8> {};
template <>
struct Reader<Sint8> : IntegerReader<Sint8> {};
template <>
struct Reader<Uint16> : IntegerReader<Uint16> {};
template <>
struct Reader<Sint16> : IntegerReader<Sint16> {};
template <>
struct Reader<Uint32> : IntegerReader<Uint32> {};
template <>
struct Reader<Sint32> : IntegerReader<Sint32> {};
template <>
struct Reader<Uint64> : IntegerReader<Uint64> {};
template <>
struct Reader<Sint64> : IntegerReader<Sint64> {};
template <>
struct Reader<Real32> : RealReader<Real32> {};
template <>
struct Reader<Real64> : RealReader<Real64> {};

template <>
struct Reader<Boolean> {
    static Boolean read(const Context& context, const mof::Literal& literal) {
        if (literal.kind != Kind::Boolean)
            refuseKind(context, literal);
        return literal.boolean;
    }
};

String utf16(const Context& context, const mof::Literal& literal) {
    try {
        // With its size: '\x0' is a character that a C string would end before.
        return String(literal.text.data(), static_cast<Uint32>(literal.text.size()));
    } catch (const Exception& notUtf8) {
        refuseBecause(context, literal, notUtf8);
    }
}

template <>
struct Reader<String> {
    static String read(const Context& context, const mof::Literal& literal) {
        if (literal.kind != Kind::String)
            refuseKind(context, literal);
        return utf16(context, literal);
    }
};

template <>
struct Reader<Char16> {
    static Char16 read(const Context& context, const mof::Literal& literal) {
        if (literal.kind == Kind::Integer)
            return Char16(IntegerReader<Uint16>::read(context, literal));
        if (literal.kind != Kind::Character)
            refuseKind(context, literal);
        const String text = utf16(context, literal);
        if (text.size() != 1)
            refuseRange(context, literal, "one UTF-16 code unit");
        return text[0];
    }
};

template <>
struct Reader<CIMDateTime> {
    static CIMDateTime read(const Context& context, const mof::Literal& literal) {
        const String text = Reader<String>::read(context, literal);
        try {
            return CIMDateTime(text);
        } catch (const Exception& reason) {
            refuseBecause(context, literal, reason);
        }
    }
};

template <>
struct Reader<CIMObjectPath> {
    static CIMObjectPath read(const Context& context, const mof::Literal& literal) {
        if ((literal.kind != Kind::Alias && literal.kind != Kind::String) || !context.readReference)
            refuseKind(context, literal);
        return context.readReference(literal);
    }
};

template <class T>
CIMValue valueOf(const Context& context, const mof::Value& value) {
    if (!context.target.isArray)
        return CIMValue(Reader<T>::read(context, value.items.front()));
    Array<T> elements;
    for (const mof::Literal& literal : value.items)
        elements.append(Reader<T>::read(context, literal));
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
