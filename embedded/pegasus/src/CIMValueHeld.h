// What stands behind a CIMValue, and the members of CIMValue for one C++ type:
//
//     CIM_VALUE_MEMBERS(Plain, const String&, String, CIMTYPE_STRING)
//
// where the class Plain says how such values are treated, by the static functions
//
//     T copyOf(const T&)                       what is kept and what is given out
//     Array<T> copyOfAll(const Array<T>&)
//     bool same(const T&, const T&)
//     String textOf(const T&)
#pragma once

#include "Shared.h"
#include "XmlValues.h"

#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

namespace Pegasus {

/// A null, and the base of what has a value. Never changed once it is made, so that it can be
/// shared.
struct CIMValueRep : Shared {
    CIMValueRep(CIMType cimType, bool array, Uint32 size)
        : type(cimType), isArray(array), arraySize(size) {}
    CIMValueRep(const CIMValueRep&) = delete;
    virtual ~CIMValueRep() = default;

    virtual bool isNull() const { return true; }
    /// REQUIRES: `other` has the same type, is an array as this one is, and is null as this one is.
    virtual bool equals(const CIMValueRep& other) const;
    virtual String text() const { return String(); }
    virtual void appendXml(std::string& out) const;

    /// As embedding::appendValue.
    static void append(std::string& out, const CIMValue& value);

    const CIMType type;
    const bool isArray;
    const Uint32 arraySize;
};

namespace values {

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
    void appendXml(std::string& out) const override { embedding::appendScalar(out, _value); }

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

    void appendXml(std::string& out) const override { embedding::appendArray(out, _elements); }

  private:
    const Array<T> _elements;
};

/// `rep` may be null: a null boolean.
template <class Rep, class T>
void get(const CIMValueRep* rep, CIMType type, bool isArray, T& x) {
    if ((rep ? rep->type : CIMTYPE_BOOLEAN) != type || (rep && rep->isArray) != isArray)
        throw TypeMismatchException();
    if (rep && !rep->isNull())
        x = static_cast<const Rep&>(*rep).value();
}

} // namespace values
} // namespace Pegasus

#define CIM_VALUE_MEMBERS(TREATMENT, ARGUMENT, T, TYPE)                                            \
    CIMValue::CIMValue(ARGUMENT x) : _rep(new values::Scalar<TREATMENT, T>(TYPE, x)) {             \
    }                                                                                              \
    CIMValue::CIMValue(const Array<T>& x) : _rep(new values::Vector<TREATMENT, T>(TYPE, x)) {      \
    }                                                                                              \
    void CIMValue::get(T& x) const {                                                               \
        values::get<values::Scalar<TREATMENT, T>>(_rep, TYPE, false, x);                           \
    }                                                                                              \
    void CIMValue::get(Array<T>& x) const {                                                        \
        values::get<values::Vector<TREATMENT, T>>(_rep, TYPE, true, x);                            \
    }
