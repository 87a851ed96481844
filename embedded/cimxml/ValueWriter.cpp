#include "cimxml/Text.h"
#include "cimxml/Types.h"
#include "cimxml/Writer.h"

#include <Pegasus/Common/CIMDateTime.h>

#include <array>
#include <charconv>
#include <type_traits>

namespace embedded::cimxml {

using namespace Pegasus;

namespace {

// The digits after the point are what tells any two values of the type apart.
template <class Real>
void appendReal(std::string& out, Real number) {
    constexpr int digits = std::is_same_v<Real, Real32> ? 7 : 16;
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number,
                                            std::chars_format::scientific, digits);
    static_cast<void>(error); // 32 characters are enough for either type
    out.append(text.data(), end);
}

// An embedded object is written as a document of its own and quoted as a string.
void appendEmbedded(std::string& out, const CIMObject& object) {
    std::string document;
    appendObject(document, object, InstanceFilter());
    appendEscaped(out, std::string_view(document));
}

template <class T>
void appendText(std::string& out, const T& value) {
    if constexpr (std::is_same_v<T, Boolean>) {
        out += value ? "TRUE" : "FALSE";
    } else if constexpr (std::is_floating_point_v<T>) {
        appendReal(out, value);
    } else if constexpr (std::is_integral_v<T>) {
        out += std::to_string(value);
    } else if constexpr (std::is_same_v<T, Char16>) {
        appendEscaped(out, String(&value, 1));
    } else if constexpr (std::is_same_v<T, String>) {
        appendEscaped(out, value);
    } else if constexpr (std::is_same_v<T, CIMDateTime>) {
        appendEscaped(out, value.toString());
    } else {
        appendEmbedded(out, value);
    }
}

template <class T>
void appendElementOf(std::string& out, const T& value) {
    if constexpr (std::is_same_v<T, CIMObjectPath>) {
        appendReference(out, value);
    } else {
        out += "<VALUE>";
        appendText(out, value);
        out += "</VALUE>\n";
    }
}

template <class T>
void appendValueOf(std::string& out, const CIMValue& value) {
    if (!value.isArray()) {
        T element{};
        value.get(element);
        appendElementOf(out, element);
        return;
    }
    Array<T> elements;
    value.get(elements);
    appendElement(out, std::is_same_v<T, CIMObjectPath> ? "VALUE.REFARRAY" : "VALUE.ARRAY", [&] {
        for (Uint32 i = 0; i < elements.size(); ++i) {
            const T element = elements[i];
            appendElementOf(out, element);
        }
    });
}

} // namespace

void appendValue(std::string& out, const CIMValue& value) {
    if (!value.isNull()) {
        withTypeOf(value.getType(),
                   [&](auto tag) { appendValueOf<typename decltype(tag)::type>(out, value); });
    }
}

} // namespace embedded::cimxml
