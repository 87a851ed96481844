#include "ObjectPathReps.h"
#include "StringRep.h"
#include "embedding/Text.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

namespace Pegasus {

namespace {

bool comesBefore(const CIMKeyBinding& x, const CIMKeyBinding& y) {
    return String::compareNoCase(x.getName().getString(), y.getName().getString()) < 0;
}

/// Sorts the elements where they are, although others share them: whoever gave the array sees it
/// sorted, as providers know it. Elements that are sorted already are only read.
void normalize(const Array<CIMKeyBinding>& keyBindings) {
    auto* const begin = const_cast<CIMKeyBinding*>(keyBindings.getData());
    CIMKeyBinding* const end = begin + keyBindings.size();
    // All references are read before anything is changed, so that one that cannot be read leaves
    // the array as it was.
    std::vector<std::pair<CIMKeyBinding*, CIMObjectPath>> read;
    for (CIMKeyBinding* key = begin; key != end; ++key) {
        const CIMKeyBindingRep& rep = CIMKeyBindingRep::of(*key);
        if (rep.type == CIMKeyBinding::REFERENCE && !rep.keepsPath())
            read.emplace_back(key, rep.path());
    }
    for (const auto& [key, path] : read) {
        const String text = path.toString();
        if (key->getValue() != text)
            key->setValue(text);
        CIMKeyBindingRep::of(*key).keep(path);
    }
    if (!std::is_sorted(begin, end, comesBefore))
        std::stable_sort(begin, end, comesBefore);
}

[[noreturn]] void rejectPath(const String& text, const String& reason) {
    throw MalformedObjectNameException(text + ", reason:\"" + reason + "\"");
}

const String& checkedHost(const String& host) {
    if (host.size() != 0 && !isHost(host))
        rejectPath(host, "invalid hostname");
    return host;
}

void appendQuoted(String& text, const String& value) {
    StringRep::visit(
        value,
        [&](const auto* units, Uint32 size) {
            using Unit = std::decay_t<decltype(*units)>;
            std::vector<Unit> quoted(2 * std::size_t{size} + 2, Unit('"')); // more is not needed
            Unit* end = quoted.data() + 1;
            for (Uint32 i = 0; i < size; ++i) {
                if (unitOf(units[i]) == '\\' || unitOf(units[i]) == '"')
                    *end++ = Unit('\\');
                *end++ = units[i];
            }
            *end++ = Unit('"');
            text.append(quoted.data(), static_cast<Uint32>(end - quoted.data()));
        });
}

using embedded::text::KeyedHash;
using embedding::foldedHash;

/// The same for values that operator== holds for equal.
std::uint64_t hashOfValue(const CIMKeyBinding& keyBinding) {
    switch (keyBinding.getType()) {
    case CIMKeyBinding::BOOLEAN:
        return foldedHash(keyBinding.getValue());
    case CIMKeyBinding::NUMERIC:
        return keyedHash(numbers::canonical(keyBinding.getValue()), asIs);
    case CIMKeyBinding::REFERENCE:
        return CIMKeyBindingRep::of(keyBinding).path().makeHashCode();
    case CIMKeyBinding::STRING:
        break;
    }
    return keyedHash(keyBinding.getValue(), asIs);
}

} // namespace

const CIMObjectPathRep& CIMObjectPathRep::of(const CIMObjectPath& path) {
    static const CIMObjectPathRep empty;
    return path._rep ? *path._rep : empty;
}

CIMObjectPath CIMObjectPathRep::pathOf(CIMObjectPathRep* rep) {
    CIMObjectPath path;
    path._rep = share(rep);
    return path;
}

CIMObjectPathRep* CIMObjectPathRep::shared(const CIMObjectPath& path) { return share(path._rep); }

bool CIMObjectPathRep::read(const String& text, CIMObjectPath& path, String& reason) {
    CIMObjectPathRep& rep = detach(path._rep);
    if (!rep.parse(text, reason))
        return false;
    normalize(rep.keyBindings);
    return true;
}

bool CIMObjectPathRep::readsBack() const {
    const auto keyReadsBack = [](const CIMKeyBinding& key) {
        const CIMKeyBindingRep& rep = CIMKeyBindingRep::of(key);
        if (rep.name.isNull())
            return false;
        Uint64 number = 0;
        Sint64 negative = 0;
        switch (rep.type) {
        case CIMKeyBinding::BOOLEAN:
            return rep.value() == "TRUE" || rep.value() == "FALSE";
        case CIMKeyBinding::NUMERIC:
            return rep.value()[0] == '-' ? numbers::parse(rep.value(), negative)
                                         : numbers::parse(rep.value(), number);
        case CIMKeyBinding::REFERENCE:
            return of(rep.path()).keyBindings.size() != 0; // a path keeps those of its keys
        case CIMKeyBinding::STRING:
            break;
        }
        // Where there is an equal sign, it may be a path.
        return rep.value().find(Char16('=')) == PEG_NOT_FOUND;
    };
    return !className.isNull() && (host.size() == 0 || !nameSpace.isNull()) &&
           std::all_of(keyBindings.getData(), keyBindings.getData() + keyBindings.size(),
                       keyReadsBack);
}

CIMObjectPath::CIMObjectPath() : _rep(nullptr) {}

CIMObjectPath::CIMObjectPath(const CIMObjectPath& x) : _rep(share(x._rep)) {}

CIMObjectPath::CIMObjectPath(const String& objectName) : CIMObjectPath() { set(objectName); }

CIMObjectPath::CIMObjectPath(const String& host, const CIMNamespaceName& nameSpace,
                             const CIMName& className, const Array<CIMKeyBinding>& keyBindings)
    : CIMObjectPath() {
    set(host, nameSpace, className, keyBindings);
}

CIMObjectPath::~CIMObjectPath() {
    release(_rep); // NOLINT(clang-analyzer-cplusplus.NewDelete): see Shared
}

CIMObjectPath& CIMObjectPath::operator=(const CIMObjectPath& x) {
    replace(_rep, x._rep);
    return *this;
}

CIMObjectPath& CIMObjectPath::operator=(const String& objectName) {
    set(objectName);
    return *this;
}

void CIMObjectPath::clear() { *this = CIMObjectPath(); }

void CIMObjectPath::set(const String& host, const CIMNamespaceName& nameSpace,
                        const CIMName& className, const Array<CIMKeyBinding>& keyBindings) {
    CIMObjectPath path;
    CIMObjectPathRep& rep = detach(path._rep);
    rep.host = checkedHost(host);
    rep.nameSpace = nameSpace;
    rep.className = className;
    normalize(keyBindings);
    rep.keyBindings = keyBindings;
    *this = path;
}

void CIMObjectPath::set(const String& objectName) {
    CIMObjectPath path;
    String reason;
    if (!CIMObjectPathRep::read(objectName, path, reason))
        rejectPath(objectName, reason);
    *this = path;
}

const String& CIMObjectPath::getHost() const { return CIMObjectPathRep::of(*this).host; }

void CIMObjectPath::setHost(const String& host) {
    const String checked = checkedHost(host);
    detach(_rep).host = checked;
}

const CIMNamespaceName& CIMObjectPath::getNameSpace() const {
    return CIMObjectPathRep::of(*this).nameSpace;
}

// The setters copy first what they are given: it may be a part of this path.
// NOLINTBEGIN(performance-unnecessary-copy-initialization)

void CIMObjectPath::setNameSpace(const CIMNamespaceName& nameSpace) {
    const CIMNamespaceName given = nameSpace;
    detach(_rep).nameSpace = given;
}

const CIMName& CIMObjectPath::getClassName() const { return CIMObjectPathRep::of(*this).className; }

void CIMObjectPath::setClassName(const CIMName& className) {
    const CIMName given = className;
    detach(_rep).className = given;
}

const Array<CIMKeyBinding>& CIMObjectPath::getKeyBindings() const {
    return CIMObjectPathRep::of(*this).keyBindings;
}

void CIMObjectPath::setKeyBindings(const Array<CIMKeyBinding>& keyBindings) {
    const Array<CIMKeyBinding> given = keyBindings;
    normalize(given);
    detach(_rep).keyBindings = given;
}

// NOLINTEND(performance-unnecessary-copy-initialization)

String CIMObjectPath::toString() const {
    const CIMObjectPathRep& rep = CIMObjectPathRep::of(*this);
    String text;
    if (rep.host.size() != 0)
        text.append("//").append(rep.host).append(Char16('/'));
    if (text.size() != 0 || !rep.nameSpace.isNull())
        text.append(rep.nameSpace.getString()).append(Char16(':'));
    text.append(rep.className.getString());
    const Array<CIMKeyBinding>& keys = rep.keyBindings;
    for (Uint32 i = 0; i < keys.size(); ++i) {
        text.append(Char16(i == 0 ? '.' : ','));
        text.append(keys[i].getName().getString()).append(Char16('='));
        const CIMKeyBinding::Type type = keys[i].getType();
        if (type == CIMKeyBinding::STRING || type == CIMKeyBinding::REFERENCE)
            appendQuoted(text, keys[i].getValue());
        else
            text.append(keys[i].getValue());
    }
    return text;
}

Boolean CIMObjectPath::identical(const CIMObjectPath& x) const {
    if (_rep == x._rep)
        return true;
    const CIMObjectPathRep& rep = CIMObjectPathRep::of(*this);
    const CIMObjectPathRep& other = CIMObjectPathRep::of(x);
    const Array<CIMKeyBinding>& mine = rep.keyBindings;
    const Array<CIMKeyBinding>& others = other.keyBindings;
    if (mine.size() != others.size() || rep.className != other.className ||
        rep.nameSpace != other.nameSpace || !String::equalNoCase(rep.host, other.host))
        return false;
    return std::equal(mine.getData(), mine.getData() + mine.size(), others.getData());
}

Uint32 CIMObjectPath::makeHashCode() const {
    const CIMObjectPathRep& rep = CIMObjectPathRep::of(*this);
    KeyedHash hash;
    hash.add(foldedHash(rep.host));
    hash.add(foldedHash(rep.nameSpace.getString()));
    hash.add(foldedHash(rep.className.getString()));
    const Array<CIMKeyBinding>& keys = rep.keyBindings;
    for (Uint32 i = 0; i < keys.size(); ++i) {
        hash.add(foldedHash(keys[i].getName().getString()));
        hash.add(keys[i].getType());
        hash.add(hashOfValue(keys[i]));
    }
    return static_cast<Uint32>(hash.value());
}

} // namespace Pegasus
