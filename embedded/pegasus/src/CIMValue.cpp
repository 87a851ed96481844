#include "Shared.h"
#include "embedding/Text.h"
#include "embedding/XmlWriter.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

#include <charconv>
#include <string>
#include <type_traits>

namespace Pegasus {

/// A null, and the base of what has a value. Never changed once it is made, so that it can be
/// shared.
struct CIMValueRep : Shared {
    CIMValueRep(CIMType cimType, bool array, Uint32 size)
        : type(cimType), isArray(array), arraySize(size) {}
    CIMValueRep(const CIMValueRep&) = delete;
    virtual ~CIMValueRep() = default;

    virtual bool isNull() const { return true; }
    /// REQUIRES: the other has the same type, is an array if this is one, and null if this is.
    virtual bool equals(const CIMValueRep&) const { return true; }
    virtual String text() const { return String(); }
    virtual void appendXml(std::string&) const {}

    /// As embedding::appendValue.
    static void append(std::string& out, const CIMValue& value);

    const CIMType type;
    const bool isArray;
    const Uint32 arraySize;
};

namespace {

using namespace embedding;

// What stands in a VALUE element, or a VALUE.REFERENCE, for each type of value.

void appendContent(std::string& out, Boolean value) { out += value ? "TRUE" : "FALSE"; }

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

void appendContent(std::string& out, const Char16& value) { appendEscaped(out, String(&value, 1)); }

void appendContent(std::string& out, const String& value) { appendEscaped(out, value); }

void appendContent(std::string& out, const CIMDateTime& value) {
    appendEscaped(out, value.toString());
}

/// An embedded object is written as a document of its own and quoted as a string.
void appendContent(std::string& out, const CIMConstObject& value) {
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

template <class Treatment, class T>
struct Scalar final : CIMValueRep {
    Scalar(CIMType cimType, const T& x)
        : CIMValueRep(cimType, false, 0), _value(Treatment::copyOf(x)) {}

    bool isNull() const override { return false; }
    T value() const { return Treatment::copyOf(_value); }
    bool equals(const CIMValueRep& other) const override {
        return Treatment::same(_value, static_cast<const Scalar&>(other)._value);
    }
    String text() const override { return Treatment::textOf(_value); }
    void appendXml(std::string& out) const override { appendScalar(out, _value); }

  private:
    const T _value;
};

template <class Treatment, class T>
struct Vector final : CIMValueRep {
    Vector(CIMType cimType, const Array<T>& x)
        : CIMValueRep(cimType, true, x.size()), _elements(Treatment::copyOfAll(x)) {}

    bool isNull() const override { return false; }
    Array<T> value() const { return Treatment::copyOfAll(_elements); }

    bool equals(const CIMValueRep& other) const override {
        const Array<T>& others = static_cast<const Vector&>(other)._elements;
        if (_elements.size() != others.size())
            return false;
        for (Uint32 i = 0; i < others.size(); ++i)
            if (!Treatment::same(_elements[i], others[i]))
                return false;
        return true;
    }

    String text() const override {
        const Char16 space(' ');
        String text;
        for (Uint32 i = 0; i < _elements.size(); ++i)
            text.append(Treatment::textOf(_elements[i])).append(space);
        return text;
    }

    void appendXml(std::string& out) const override { appendArray(out, _elements); }

  private:
    const Array<T> _elements;
};

/// `rep` may be null: a null boolean.
template <class Rep, class T>
void take(const CIMValueRep* rep, CIMType type, bool isArray, T& x) {
    if ((rep ? rep->type : CIMTYPE_BOOLEAN) != type || (rep && rep->isArray) != isArray)
        throw TypeMismatchException();
    if (rep && !rep->isNull())
        x = static_cast<const Rep&>(*rep).value();
}

/// The types whose copies are values.
struct Plain {
    template <class T>
    static const T& copyOf(const T& x) {
        return x;
    }

    template <class T>
    static const Array<T>& copyOfAll(const Array<T>& x) {
        return x;
    }

    template <class T>
    static bool same(const T& x, const T& y) {
        return x == y;
    }

    static String textOf(const Char16& x) { return String(&x, 1); }
    static String textOf(const String& x) { return x; }
    static String textOf(const CIMDateTime& x) { return x.toString(); }
    static String textOf(const CIMObjectPath& x) { return x.toString(); }
    static String textOf(Real32 x) { return textOf(Real64(x)); }

    /// With all the digits that tell two real64 apart, whatever the locale.
    template <class Number>
    static String textOf(const Number& x) {
        std::string text;
        appendContent(text, x);
        return fromUtf8(text);
    }
};

/// Copies of these share, so a value keeps and gives out clones.
struct Cloned {
    template <class T>
    static T copyOf(const T& x) {
        if (x.isUninitialized())
            throw UninitializedObjectException();
        return x.clone();
    }

    template <class T>
    static Array<T> copyOfAll(const Array<T>& x) {
        Array<T> copies;
        copies.reserveCapacity(x.size());
        for (Uint32 i = 0; i < x.size(); ++i)
            copies.append(copyOf(x[i]));
        return copies;
    }

    template <class T>
    static bool same(const T& x, const T& y) {
        return x.identical(y);
    }

    static String textOf(const CIMObject& x) { return x.toString(); }
};

} // namespace

// The members of CIMValue for one C++ type. The class TREATMENT says how such values are copied,
// compared and written.
#define CIM_VALUE_MEMBERS(TREATMENT, ARGUMENT, T, TYPE)                                            \
    CIMValue::CIMValue(ARGUMENT x) : _rep(new Scalar<TREATMENT, T>(TYPE, x)) {}                    \
    CIMValue::CIMValue(const Array<T>& x) : _rep(new Vector<TREATMENT, T>(TYPE, x)) {}             \
    void CIMValue::get(T& x) const { take<Scalar<TREATMENT, T>>(_rep, TYPE, false, x); }           \
    void CIMValue::get(Array<T>& x) const { take<Vector<TREATMENT, T>>(_rep, TYPE, true, x); }

CIM_VALUE_MEMBERS(Plain, Boolean, Boolean, CIMTYPE_BOOLEAN)
CIM_VALUE_MEMBERS(Plain, Uint8, Uint8, CIMTYPE_UINT8)
CIM_VALUE_MEMBERS(Plain, Sint8, Sint8, CIMTYPE_SINT8)
CIM_VALUE_MEMBERS(Plain, Uint16, Uint16, CIMTYPE_UINT16)
CIM_VALUE_MEMBERS(Plain, Sint16, Sint16, CIMTYPE_SINT16)
CIM_VALUE_MEMBERS(Plain, Uint32, Uint32, CIMTYPE_UINT32)
CIM_VALUE_MEMBERS(Plain, Sint32, Sint32, CIMTYPE_SINT32)
CIM_VALUE_MEMBERS(Plain, Uint64, Uint64, CIMTYPE_UINT64)
CIM_VALUE_MEMBERS(Plain, Sint64, Sint64, CIMTYPE_SINT64)
CIM_VALUE_MEMBERS(Plain, Real32, Real32, CIMTYPE_REAL32)
CIM_VALUE_MEMBERS(Plain, Real64, Real64, CIMTYPE_REAL64)
CIM_VALUE_MEMBERS(Plain, const Char16&, Char16, CIMTYPE_CHAR16)
CIM_VALUE_MEMBERS(Plain, const String&, String, CIMTYPE_STRING)
CIM_VALUE_MEMBERS(Plain, const CIMDateTime&, CIMDateTime, CIMTYPE_DATETIME)
CIM_VALUE_MEMBERS(Plain, const CIMObjectPath&, CIMObjectPath, CIMTYPE_REFERENCE)
CIM_VALUE_MEMBERS(Cloned, const CIMObject&, CIMObject, CIMTYPE_OBJECT)
CIM_VALUE_MEMBERS(Cloned, const CIMInstance&, CIMInstance, CIMTYPE_INSTANCE)

CIMValue::CIMValue() : _rep(nullptr) {}

CIMValue::CIMValue(CIMType type, Boolean isArray, Uint32 arraySize)
    : _rep(new CIMValueRep(type, isArray, arraySize)) {}

CIMValue::CIMValue(const CIMValue& x) : _rep(share(x._rep)) {}

CIMValue::~CIMValue() { release(_rep); }

CIMValue& CIMValue::operator=(const CIMValue& x) {
    assign(x);
    return *this;
}

void CIMValue::assign(const CIMValue& x) { replace(_rep, x._rep); }

void CIMValue::clear() { assign(CIMValue()); }

void CIMValue::setNullValue(CIMType type, Boolean isArray, Uint32 arraySize) {
    assign(CIMValue(type, isArray, arraySize));
}

Boolean CIMValue::typeCompatible(const CIMValue& x) const {
    return getType() == x.getType() && isArray() == x.isArray();
}

Boolean CIMValue::isArray() const { return _rep && _rep->isArray; }

Boolean CIMValue::isNull() const { return !_rep || _rep->isNull(); }

Uint32 CIMValue::getArraySize() const { return _rep && _rep->isArray ? _rep->arraySize : 0; }

CIMType CIMValue::getType() const { return _rep ? _rep->type : CIMTYPE_BOOLEAN; }

Boolean CIMValue::equal(const CIMValue& x) const {
    if (!typeCompatible(x) || isNull() != x.isNull())
        return false;
    return isNull() || _rep->equals(*x._rep);
}

String CIMValue::toString() const { return _rep ? _rep->text() : String(); }

void CIMValueRep::append(std::string& out, const CIMValue& value) {
    if (value._rep)
        value._rep->appendXml(out);
}

void embedding::appendValue(std::string& out, const CIMValue& value) {
    CIMValueRep::append(out, value);
}

} // namespace Pegasus
