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

#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

#include <memory>
#include <utility>

namespace Pegasus {
namespace values {

/// A scalar or an array, whatever its type. What two values hold may be compared only when their
/// types and array-ness are the same.
class Held {
  public:
    virtual ~Held() = default;
    virtual bool equals(const Held& other) const = 0;
    virtual String text() const = 0;
    virtual Uint32 arraySize() const = 0;
};

template <class Treatment, class T>
class HeldScalar final : public Held {
  public:
    explicit HeldScalar(const T& x) : _value(Treatment::copyOf(x)) {}

    T value() const { return Treatment::copyOf(_value); }
    bool equals(const Held& other) const override {
        return Treatment::same(_value, static_cast<const HeldScalar&>(other)._value);
    }
    String text() const override { return Treatment::textOf(_value); }
    Uint32 arraySize() const override { return 0; }

  private:
    T _value;
};

template <class Treatment, class T>
class HeldArray final : public Held {
  public:
    explicit HeldArray(const Array<T>& x) : _elements(Treatment::copyOfAll(x)) {}

    Array<T> value() const { return Treatment::copyOfAll(_elements); }

    bool equals(const Held& other) const override {
        const Array<T>& others = static_cast<const HeldArray&>(other)._elements;
        if (_elements.size() != others.size())
            return false;
        for (Uint32 i = 0; i < others.size(); ++i) {
            if (!Treatment::same(_elements[i], others[i]))
                return false;
        }
        return true;
    }

    String text() const override {
        const Char16 space(' ');
        String text;
        for (Uint32 i = 0; i < _elements.size(); ++i)
            text.append(Treatment::textOf(_elements[i])).append(space);
        return text;
    }

    Uint32 arraySize() const override { return _elements.size(); }

  private:
    const Array<T> _elements;
};

} // namespace values

/// Never changed once it is made, so that it can be shared.
struct CIMValueRep : Shared {
    CIMValueRep(CIMType cimType, bool array, Uint32 size,
                std::unique_ptr<const values::Held> value = nullptr)
        : type(cimType), isArray(array), arraySize(size), held(std::move(value)) {}

    const CIMType type;
    const bool isArray;
    const Uint32 arraySize;
    const std::unique_ptr<const values::Held> held; // null when the value is null
};

namespace values {

template <class HeldValue, class T>
CIMValueRep* makeRep(CIMType type, bool isArray, const T& x) {
    std::unique_ptr<const Held> held = std::make_unique<HeldValue>(x);
    const Uint32 size = held->arraySize();
    return new CIMValueRep(type, isArray, size, std::move(held));
}

/// `rep` may be null: a null boolean.
template <class HeldValue, class T>
void get(const CIMValueRep* rep, CIMType type, bool isArray, T& x) {
    if ((rep ? rep->type : CIMTYPE_BOOLEAN) != type || (rep && rep->isArray) != isArray)
        throw TypeMismatchException();
    if (rep && rep->held)
        x = static_cast<const HeldValue&>(*rep->held).value();
}

} // namespace values
} // namespace Pegasus

#define CIM_VALUE_MEMBERS(TREATMENT, ARGUMENT, T, TYPE)                                            \
    CIMValue::CIMValue(ARGUMENT x)                                                                 \
        : _rep(values::makeRep<values::HeldScalar<TREATMENT, T>>(TYPE, false, x)) {                \
    }                                                                                              \
    CIMValue::CIMValue(const Array<T>& x)                                                          \
        : _rep(values::makeRep<values::HeldArray<TREATMENT, T>>(TYPE, true, x)) {                  \
    }                                                                                              \
    void CIMValue::set(ARGUMENT x) {                                                               \
        assign(CIMValue(x));                                                                       \
    }                                                                                              \
    void CIMValue::set(const Array<T>& x) {                                                        \
        assign(CIMValue(x));                                                                       \
    }                                                                                              \
    void CIMValue::get(T& x) const {                                                               \
        values::get<values::HeldScalar<TREATMENT, T>>(_rep, TYPE, false, x);                       \
    }                                                                                              \
    void CIMValue::get(Array<T>& x) const {                                                        \
        values::get<values::HeldArray<TREATMENT, T>>(_rep, TYPE, true, x);                         \
    }
