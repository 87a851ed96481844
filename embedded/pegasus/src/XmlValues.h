// What stands in a VALUE element, or a VALUE.REFERENCE, for each type of value.
#pragma once

#include "embedding/XmlWriter.h"

#include <charconv>
#include <type_traits>

namespace Pegasus::embedding {

inline void appendContent(std::string& out, Boolean value) { out += value ? "TRUE" : "FALSE"; }

/// Behind the point are as many digits as OpenPegasus writes: for a Real64 they tell any two values
/// apart, for a Real32 there is one too few.
template <class Number>
std::enable_if_t<std::is_arithmetic_v<Number>> appendContent(std::string& out, Number value) {
    char text[32]; // enough for each type
    std::to_chars_result end{};
    if constexpr (std::is_floating_point_v<Number>) {
        constexpr int digits = std::is_same_v<Number, Real32> ? 7 : 16;
        end = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, digits);
    } else {
        end = std::to_chars(text, text + sizeof text, value);
    }
    out.append(text, end.ptr);
}

inline void appendContent(std::string& out, const Char16& value) {
    appendEscaped(out, String(&value, 1));
}

inline void appendContent(std::string& out, const String& value) { appendEscaped(out, value); }

inline void appendContent(std::string& out, const CIMDateTime& value) {
    appendEscaped(out, value.toString());
}

/// An embedded object is written as a document of its own and quoted as a string.
inline void appendContent(std::string& out, const CIMConstObject& value) {
    std::string document;
    appendObject(document, value, InstanceFilter());
    appendEscaped(out, document);
}

template <class T>
void appendScalar(std::string& out, const T& value) {
    if constexpr (std::is_same_v<T, CIMObjectPath>) {
        appendReference(out, value);
    } else {
        out += "<VALUE>";
        appendContent(out, value);
        out += "</VALUE>\n";
    }
}

template <class T>
void appendArray(std::string& out, const Array<T>& values) {
    appendElement(
        out, std::is_same_v<T, CIMObjectPath> ? "VALUE.REFARRAY" : "VALUE.ARRAY",
        [&] {
            for (Uint32 i = 0; i < values.size(); ++i)
                appendScalar(out, values[i]);
        });
}

} // namespace Pegasus::embedding
