#include "ObjectPathReps.h"
#include "embedding/References.h"

#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

#include <charconv>
#include <limits>
#include <mutex>
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

bool isReal(CIMType type) { return type == CIMTYPE_REAL32 || type == CIMTYPE_REAL64; }

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

CIMKeyBindingRep::CIMKeyBindingRep(const CIMKeyBindingRep& x)
    : Shared(x), name(x.name), type(x.type), _hasValue(x._hasValue.load(std::memory_order_acquire)),
      _path(share(x._path.load(std::memory_order_acquire))) {
    if (_hasValue)
        _value = x._value;
}

CIMKeyBindingRep::~CIMKeyBindingRep() { release(_path.load(std::memory_order_acquire)); }

const CIMKeyBindingRep& CIMKeyBindingRep::of(const CIMKeyBinding& binding) {
    static const CIMKeyBindingRep none;
    return binding._rep ? *binding._rep : none;
}

CIMKeyBinding CIMKeyBindingRep::keeping(const CIMName& name, const CIMObjectPath& path) {
    CIMKeyBinding binding;
    CIMKeyBindingRep& rep = detach(binding._rep);
    rep.name = name;
    rep.type = CIMKeyBinding::REFERENCE;
    rep._hasValue = false;
    rep.keep(path);
    return binding;
}

const String& CIMKeyBindingRep::value() const {
    if (!_hasValue.load(std::memory_order_acquire)) {
        // Made before the lock, because nested references take it, too.
        const String text = path().toString();
        static std::mutex mutex;
        const std::lock_guard<std::mutex> lock(mutex);
        if (!_hasValue.load(std::memory_order_relaxed)) {
            _value = text;
            _hasValue.store(true, std::memory_order_release);
        }
    }
    return _value;
}

void CIMKeyBindingRep::setValue(const String& value) {
    _value = value;
    _hasValue.store(true, std::memory_order_release);
    release(_path.exchange(nullptr, std::memory_order_acq_rel));
}

void CIMKeyBindingRep::keep(const CIMObjectPath& path) const {
    CIMObjectPathRep* const mine = CIMObjectPathRep::shared(path);
    CIMObjectPathRep* kept = nullptr;
    if (!_path.compare_exchange_strong(kept, mine, std::memory_order_acq_rel))
        release(mine);
}

CIMObjectPath CIMKeyBindingRep::path() const {
    CIMObjectPathRep* const kept = _path.load(std::memory_order_acquire);
    return kept ? CIMObjectPathRep::pathOf(kept) : CIMObjectPath(_value);
}

CIMObjectPath embedding::referencedPath(const CIMKeyBinding& key) {
    return CIMKeyBindingRep::of(key).path();
}

CIMKeyBinding::CIMKeyBinding() : _rep(nullptr) {}

CIMKeyBinding::CIMKeyBinding(const CIMKeyBinding& x) : _rep(share(x._rep)) {}

CIMKeyBinding::CIMKeyBinding(const CIMName& name, const String& value, Type type)
    : _rep(new CIMKeyBindingRep) {
    _rep->name = name;
    _rep->setValue(value);
    _rep->type = type;
}

CIMKeyBinding::CIMKeyBinding(const CIMName& name, const CIMValue& value) : CIMKeyBinding() {
    const Type type = typeFor(value);
    if (type == REFERENCE && !value.isNull()) {
        CIMObjectPath path;
        value.get(path);
        if (CIMObjectPathRep::of(path).readsBack()) {
            *this = CIMKeyBindingRep::keeping(name, path);
            return;
        }
    }
    *this = CIMKeyBinding(name, value.toString(), type);
}

CIMKeyBinding::~CIMKeyBinding() { release(_rep); }

CIMKeyBinding& CIMKeyBinding::operator=(const CIMKeyBinding& x) {
    replace(_rep, x._rep);
    return *this;
}

const CIMName& CIMKeyBinding::getName() const { return CIMKeyBindingRep::of(*this).name; }

// The setters copy first what they are given: it may be a part of this key.
// NOLINTBEGIN(performance-unnecessary-copy-initialization)

void CIMKeyBinding::setName(const CIMName& name) {
    const CIMName given = name;
    detach(_rep).name = given;
}

const String& CIMKeyBinding::getValue() const { return CIMKeyBindingRep::of(*this).value(); }

void CIMKeyBinding::setValue(const String& value) {
    const String given = value;
    detach(_rep).setValue(given);
}

// NOLINTEND(performance-unnecessary-copy-initialization)

CIMKeyBinding::Type CIMKeyBinding::getType() const { return CIMKeyBindingRep::of(*this).type; }

void CIMKeyBinding::setType(Type type) { detach(_rep).type = type; }

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
    const CIMKeyBindingRep& xRep = CIMKeyBindingRep::of(x);
    const CIMKeyBindingRep& yRep = CIMKeyBindingRep::of(y);
    if (x.getType() == CIMKeyBinding::REFERENCE && xRep.keepsPath() && yRep.keepsPath())
        return xRep.path() == yRep.path();
    if (x.getValue() == y.getValue())
        return true;
    switch (x.getType()) {
    case CIMKeyBinding::BOOLEAN:
        return String::equalNoCase(x.getValue(), y.getValue());
    case CIMKeyBinding::NUMERIC:
        return numbers::canonical(x.getValue()) == numbers::canonical(y.getValue());
    case CIMKeyBinding::REFERENCE:
        try {
            return xRep.path() == yRep.path();
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
