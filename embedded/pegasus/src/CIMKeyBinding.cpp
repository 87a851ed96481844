#include "Numbers.h"
#include "ObjectPathReps.h"

#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

#include <charconv>
#include <limits>
#include <string>

namespace Pegasus {

namespace {

CIMKeyBinding::Type typeFor(const CIMValue& value) {
    if (value.isArray())
        throw TypeMismatchException();
    switch (value.getType()) {
    case CIMTYPE_BOOLEAN:
        return CIMKeyBinding::BOOLEAN;
    case CIMTYPE_CHAR16:
    case CIMTYPE_STRING:
    case CIMTYPE_DATETIME:
        return CIMKeyBinding::STRING;
    case CIMTYPE_REFERENCE:
        return CIMKeyBinding::REFERENCE;
    case CIMTYPE_OBJECT:
    case CIMTYPE_INSTANCE:
        throw TypeMismatchException();
    default:
        return CIMKeyBinding::NUMERIC;
    }
}

bool isReal(CIMType type) {
    return type == CIMTYPE_REAL32 || type == CIMTYPE_REAL64;
}

/// NaN, which equals nothing, for what is no number from end to end.
Real64 realOf(const String& text) {
    const std::string characters(text.getCString());
    const char* const end = characters.data() + characters.size();
    Real64 value = 0;
    const std::from_chars_result result = std::from_chars(characters.data(), end, value);
    const bool isNumber = result.ec == std::errc() && result.ptr == end;
    return isNumber ? value : std::numeric_limits<Real64>::quiet_NaN();
}

} // namespace

CIMKeyBinding::CIMKeyBinding() : _rep(new CIMKeyBindingRep) {
}

CIMKeyBinding::CIMKeyBinding(const CIMKeyBinding& x) : _rep(share(x._rep)) {
}

CIMKeyBinding::CIMKeyBinding(const CIMName& name, const String& value, Type type)
    : CIMKeyBinding() {
    _rep->name = name;
    _rep->value = value;
    _rep->type = type;
}

CIMKeyBinding::CIMKeyBinding(const CIMName& name, const CIMValue& value)
    : CIMKeyBinding(name, value.toString(), typeFor(value)) {
}

CIMKeyBinding::~CIMKeyBinding() {
    release(_rep);
}

CIMKeyBinding& CIMKeyBinding::operator=(const CIMKeyBinding& x) {
    replace(_rep, x._rep);
    return *this;
}

const CIMName& CIMKeyBinding::getName() const {
    return _rep->name;
}

void CIMKeyBinding::setName(const CIMName& name) {
    detach(_rep).name = name;
}

const String& CIMKeyBinding::getValue() const {
    return _rep->value;
}

void CIMKeyBinding::setValue(const String& value) {
    detach(_rep).value = value;
}

CIMKeyBinding::Type CIMKeyBinding::getType() const {
    return _rep->type;
}

void CIMKeyBinding::setType(Type type) {
    detach(_rep).type = type;
}

// NOLINTNEXTLINE(readability-make-member-function-const): the interface declares it so
Boolean CIMKeyBinding::equal(CIMValue value) {
    if (value.isNull())
        return false;
    try {
        const CIMKeyBinding other(getName(), value);
        // A real may be written in many ways; the text made from `value` is but one of them.
        if (isReal(value.getType()))
            return getType() == NUMERIC && realOf(getValue()) == realOf(other.getValue());
        return *this == other;
    } catch (const TypeMismatchException&) {
        return false;
    }
}

Boolean operator==(const CIMKeyBinding& x, const CIMKeyBinding& y) {
    if (x.getType() != y.getType() || x.getName() != y.getName())
        return false;
    if (x.getValue() == y.getValue())
        return true;
    switch (x.getType()) {
    case CIMKeyBinding::BOOLEAN:
        return String::equalNoCase(x.getValue(), y.getValue());
    case CIMKeyBinding::NUMERIC:
        return numbers::canonical(x.getValue()) == numbers::canonical(y.getValue());
    case CIMKeyBinding::REFERENCE:
        try {
            return CIMObjectPath(x.getValue()) == CIMObjectPath(y.getValue());
        } catch (const Exception&) {
            // A key binding that is not part of a path may hold any text.
            return false;
        }
    case CIMKeyBinding::STRING:
        break;
    }
    return false;
}

} // namespace Pegasus
