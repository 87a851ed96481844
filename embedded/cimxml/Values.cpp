#include "cimxml/Values.h"

#include "cimxml/Rejection.h"

#include "cimxml/Types.h"
#include "embedding/Text.h"
#include "text/Ascii.h"

#include <Pegasus/Common/CIMDateTime.h>

#include <charconv>
#include <string_view>
#include <type_traits>

namespace embedded::cimxml {

using namespace Pegasus;
using namespace Pegasus::embedding;
using text::trimmed;

namespace {

[[noreturn]] void throwInvalid(std::string_view text, const char* type) {
    cimxml::throwInvalid("Invalid " + std::string(type) + " value \"" + std::string(text) + "\".");
}

// All of `text`, or nothing; `text` has no sign but "-".
template <class Number, class... Format>
bool convert(std::string_view text, Number& number, Format... format) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, format...);
    return !text.empty() && error == std::errc() && stop == end;
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

template <class T>
T readScalar(std::string_view text, CIMType type) {
    if constexpr (std::is_same_v<T, Boolean>) {
        return readBoolean(text);
    } else if constexpr (std::is_same_v<T, String>) {
        return fromUtf8(text);
    } else if constexpr (std::is_same_v<T, Char16>) {
        const String character = fromUtf8(text);
        if (character.size() != 1)
            throwInvalid(text, cimTypeToString(type));
        return character[0];
    } else if constexpr (std::is_same_v<T, CIMDateTime>) {
        try {
            return CIMDateTime(fromUtf8(trimmed(text)));
        } catch (const Exception&) {
            throwInvalid(text, cimTypeToString(type));
        }
    } else if constexpr (std::is_arithmetic_v<T>) {
        T number{};
        bool good = false;
        if constexpr (std::is_floating_point_v<T>)
            good = readReal(trimmed(text), number);
        else
            good = readInteger(trimmed(text), number);
        if (!good)
            throwInvalid(text, cimTypeToString(type));
        return number;
    } else {
        throwInvalid(text, cimTypeToString(type));
    }
}

CIMValue readScalarValue(const Element& value, CIMType type) {
    return withTypeOf(
        type,
        [&](auto tag) {
            return CIMValue(readScalar<typename decltype(tag)::type>(value.text(), type));
        });
}

CIMValue readArrayValue(const Element& values, CIMType type) {
    if (values.child("VALUE.NULL"))
        throw CIMException(CIM_ERR_NOT_SUPPORTED, "VALUE.NULL in an array is not supported.");
    return withTypeOf(type, [&](auto tag) {
        using Item = typename decltype(tag)::type;
        Array<Item> elements;
        for (const Element& value : values.children("VALUE"))
            elements.append(readScalar<Item>(value.text(), type));
        return CIMValue(elements);
    });
}

} // namespace

bool readBoolean(std::string_view text) {
    const String word = fromUtf8(trimmed(text));
    const bool isTrue = String::equalNoCase(word, "TRUE");
    if (!isTrue && !String::equalNoCase(word, "FALSE"))
        throwInvalid(text, "boolean");
    return isTrue;
}

String readNumberText(std::string_view text) {
    const std::string_view number = trimmed(text);
    Sint64 asSigned = 0;
    Uint64 asUnsigned = 0;
    Real64 asReal = 0;
    if (!readInteger(number, asSigned) && !readInteger(number, asUnsigned) &&
        !readReal(number, asReal))
        throwInvalid(text, "numeric");
    return fromUtf8(number);
}

CIMValue readValue(const Element& holder, CIMType type, bool isArray, const SoleKey& soleKey) {
    if (const Element value = holder.child("VALUE"))
        return readScalarValue(value, type);
    if (const Element values = holder.child("VALUE.ARRAY"))
        return readArrayValue(values, type);
    if (const Element reference = holder.child("VALUE.REFERENCE"))
        return CIMValue(readReference(reference, soleKey));
    return CIMValue(type, isArray);
}

} // namespace embedded::cimxml
