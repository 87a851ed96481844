#include "CIMValueHeld.h"

#include <charconv>
#include <string>

namespace Pegasus {

namespace {

/// The types whose copies are values. Objects and instances are in CIMValueObjects.cpp.
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

    static String textOf(Boolean x) { return String(x ? "TRUE" : "FALSE"); }
    static String textOf(const Char16& x) { return String(&x, 1); }
    static String textOf(const String& x) { return x; }
    static String textOf(const CIMDateTime& x) { return x.toString(); }
    static String textOf(const CIMObjectPath& x) { return x.toString(); }
    static String textOf(Real32 x) { return textOf(Real64(x)); }

    /// With all the digits that tell two real64 apart, whatever the locale.
    static String textOf(Real64 x) {
        char text[32];
        const std::to_chars_result result =
            std::to_chars(text, text + sizeof text, x, std::chars_format::scientific, 16);
        return String(text, static_cast<Uint32>(result.ptr - text));
    }

    template <class Integer>
    static String textOf(const Integer& x) {
        return String(std::to_string(x).c_str());
    }
};

} // namespace

bool CIMValueRep::equals(const CIMValueRep&) const {
    return true; // a null and a null
}

void CIMValueRep::appendXml(std::string&) const {
}

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

CIMValue::CIMValue() : _rep(nullptr) {
}

CIMValue::CIMValue(CIMType type, Boolean isArray, Uint32 arraySize)
    : _rep(new CIMValueRep(type, isArray, arraySize)) {
}

CIMValue::CIMValue(const CIMValue& x) : _rep(share(x._rep)) {
}

CIMValue::~CIMValue() {
    release(_rep);
}

CIMValue& CIMValue::operator=(const CIMValue& x) {
    assign(x);
    return *this;
}

void CIMValue::assign(const CIMValue& x) {
    replace(_rep, x._rep);
}

void CIMValue::clear() {
    assign(CIMValue());
}

void CIMValue::setNullValue(CIMType type, Boolean isArray, Uint32 arraySize) {
    assign(CIMValue(type, isArray, arraySize));
}

Boolean CIMValue::typeCompatible(const CIMValue& x) const {
    return getType() == x.getType() && isArray() == x.isArray();
}

Boolean CIMValue::isArray() const {
    return _rep && _rep->isArray;
}

Boolean CIMValue::isNull() const {
    return !_rep || _rep->isNull();
}

Uint32 CIMValue::getArraySize() const {
    return _rep && _rep->isArray ? _rep->arraySize : 0;
}

CIMType CIMValue::getType() const {
    return _rep ? _rep->type : CIMTYPE_BOOLEAN;
}

Boolean CIMValue::equal(const CIMValue& x) const {
    if (!typeCompatible(x) || isNull() != x.isNull())
        return false;
    return isNull() || _rep->equals(*x._rep);
}

String CIMValue::toString() const {
    return _rep ? _rep->text() : String();
}

void CIMValueRep::append(std::string& out, const CIMValue& value) {
    if (value._rep)
        value._rep->appendXml(out);
}

void embedding::appendValue(std::string& out, const CIMValue& value) {
    CIMValueRep::append(out, value);
}

} // namespace Pegasus
