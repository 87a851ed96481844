#include "HostName.h"
#include "Numbers.h"
#include "ObjectPathParser.h"
#include "ObjectPathReps.h"
#include "text/Ascii.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace Pegasus {

namespace {

bool comesBefore(const CIMKeyBinding& x, const CIMKeyBinding& y) {
    return String::compareNoCase(x.getName().getString(), y.getName().getString()) < 0;
}

/// Sorts the elements where they are, although others share them: whoever gave the array sees it
/// sorted, as providers know it. Elements that are sorted already are only read.
void normalize(const Array<CIMKeyBinding>& keyBindings) {
    // All references are read before anything is changed, so that one that cannot be read leaves
    // the array as it was.
    std::vector<String> references(keyBindings.size());
    for (Uint32 i = 0; i < keyBindings.size(); ++i) {
        if (keyBindings[i].getType() == CIMKeyBinding::REFERENCE)
            references[i] = CIMObjectPath(keyBindings[i].getValue()).toString();
    }
    auto* const begin = const_cast<CIMKeyBinding*>(keyBindings.getData());
    CIMKeyBinding* const end = begin + keyBindings.size();
    for (Uint32 i = 0; i < keyBindings.size(); ++i) {
        const bool isReference = begin[i].getType() == CIMKeyBinding::REFERENCE;
        if (isReference && begin[i].getValue() != references[i])
            begin[i].setValue(references[i]);
    }
    if (!std::is_sorted(begin, end, comesBefore))
        std::stable_sort(begin, end, comesBefore);
}

const String& checkedHost(const String& host) {
    if (host.size() != 0 && !isHost(host))
        rejectObjectPath(host, "invalid hostname");
    return host;
}

void appendQuoted(String& text, const String& value) {
    const Char16 backslash('\\');
    const Char16 quote('"');
    const Char16* const units = value.getChar16Data();
    text.append(quote);
    for (Uint32 i = 0; i < value.size(); ++i) {
        if (units[i] == backslash || units[i] == quote)
            text.append(backslash);
        text.append(units[i]);
    }
    text.append(quote);
}

Uint16 asIs(Uint16 unit) {
    return unit;
}

/// FNV-1a over code units, as `fold` shows them.
class Hash {
  public:
    void add(const String& text, Uint16 (*fold)(Uint16)) {
        const Char16* const units = text.getChar16Data();
        for (Uint32 i = 0; i < text.size(); ++i)
            add(fold(units[i]));
        add(separator);
    }

    void add(Uint32 number) { _value = (_value ^ number) * 16777619U; }

    Uint32 value() const { return _value; }

  private:
    static constexpr Uint32 separator = 0x10000; // no code unit
    Uint32 _value = 2166136261U;
};

/// Adds the same for values that operator== holds for equal.
void addValue(Hash& hash, const CIMKeyBinding& keyBinding) {
    const String& value = keyBinding.getValue();
    switch (keyBinding.getType()) {
    case CIMKeyBinding::BOOLEAN:
        return hash.add(value, embedded::text::lower);
    case CIMKeyBinding::STRING:
        return hash.add(value, asIs);
    case CIMKeyBinding::NUMERIC:
        return hash.add(numbers::canonical(value), asIs);
    case CIMKeyBinding::REFERENCE:
        return hash.add(CIMObjectPath(value).makeHashCode());
    }
}

} // namespace

CIMObjectPath::CIMObjectPath() : _rep(new CIMObjectPathRep) {
}

CIMObjectPath::CIMObjectPath(const CIMObjectPath& x) : _rep(share(x._rep)) {
}

CIMObjectPath::CIMObjectPath(const String& objectName) : CIMObjectPath() {
    set(objectName);
}

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

void CIMObjectPath::clear() {
    *this = CIMObjectPath();
}

void CIMObjectPath::set(const String& host, const CIMNamespaceName& nameSpace,
                        const CIMName& className, const Array<CIMKeyBinding>& keyBindings) {
    CIMObjectPath path;
    path._rep->host = checkedHost(host);
    path._rep->nameSpace = nameSpace;
    path._rep->className = className;
    path.setKeyBindings(keyBindings);
    *this = path;
}

void CIMObjectPath::set(const String& objectName) {
    CIMObjectPath path;
    CIMObjectPathRep& rep = *path._rep;
    parseObjectPath(objectName, rep.host, rep.nameSpace, rep.className, rep.keyBindings);
    normalize(rep.keyBindings);
    *this = path;
}

const String& CIMObjectPath::getHost() const {
    return _rep->host;
}

void CIMObjectPath::setHost(const String& host) {
    const String checked = checkedHost(host);
    detach(_rep).host = checked;
}

const CIMNamespaceName& CIMObjectPath::getNameSpace() const {
    return _rep->nameSpace;
}

// The setters copy first what they are given: it may be a part of this path.
// NOLINTBEGIN(performance-unnecessary-copy-initialization)

void CIMObjectPath::setNameSpace(const CIMNamespaceName& nameSpace) {
    const CIMNamespaceName given = nameSpace;
    detach(_rep).nameSpace = given;
}

const CIMName& CIMObjectPath::getClassName() const {
    return _rep->className;
}

void CIMObjectPath::setClassName(const CIMName& className) {
    const CIMName given = className;
    detach(_rep).className = given;
}

const Array<CIMKeyBinding>& CIMObjectPath::getKeyBindings() const {
    return _rep->keyBindings;
}

void CIMObjectPath::setKeyBindings(const Array<CIMKeyBinding>& keyBindings) {
    const Array<CIMKeyBinding> given = keyBindings;
    normalize(given);
    detach(_rep).keyBindings = given;
}

// NOLINTEND(performance-unnecessary-copy-initialization)

String CIMObjectPath::toString() const {
    String text;
    if (_rep->host.size() != 0)
        text = "//" + _rep->host + "/";
    if (text.size() != 0 || !_rep->nameSpace.isNull())
        text.append(_rep->nameSpace.getString()).append(Char16(':'));
    text.append(_rep->className.getString());
    const Array<CIMKeyBinding>& keys = _rep->keyBindings;
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
    const Array<CIMKeyBinding>& mine = _rep->keyBindings;
    const Array<CIMKeyBinding>& others = x._rep->keyBindings;
    if (mine.size() != others.size() || _rep->className != x._rep->className ||
        _rep->nameSpace != x._rep->nameSpace || !String::equalNoCase(_rep->host, x._rep->host))
        return false;
    return std::equal(mine.getData(), mine.getData() + mine.size(), others.getData());
}

Uint32 CIMObjectPath::makeHashCode() const {
    Hash hash;
    hash.add(_rep->host, embedded::text::lower);
    hash.add(_rep->nameSpace.getString(), embedded::text::lower);
    hash.add(_rep->className.getString(), embedded::text::lower);
    const Array<CIMKeyBinding>& keys = _rep->keyBindings;
    for (Uint32 i = 0; i < keys.size(); ++i) {
        hash.add(keys[i].getName().getString(), embedded::text::lower);
        hash.add(static_cast<Uint32>(keys[i].getType()));
        addValue(hash, keys[i]);
    }
    return hash.value();
}

Boolean operator==(const CIMObjectPath& x, const CIMObjectPath& y) {
    return x.identical(y);
}

Boolean operator!=(const CIMObjectPath& x, const CIMObjectPath& y) {
    return !x.identical(y);
}

} // namespace Pegasus
