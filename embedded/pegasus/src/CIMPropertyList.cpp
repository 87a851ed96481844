#include "Shared.h"

#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Exception.h>

namespace Pegasus {

/// There is one for every list that is not null, and for a null list that was given tags.
struct CIMPropertyListRep : Shared {
    bool isNull = true;
    Array<CIMName> names;
    Array<Uint32> tags;
};

namespace {

bool isIn(const Array<CIMName>& names, const CIMName& name) {
    for (Uint32 i = 0; i < names.size(); ++i) {
        if (names[i] == name)
            return true;
    }
    return false;
}

} // namespace

CIMPropertyList::CIMPropertyList() : _rep(nullptr) {
}

CIMPropertyList::CIMPropertyList(const CIMPropertyList& x) : _rep(share(x._rep)) {
}

CIMPropertyList::CIMPropertyList(const Array<CIMName>& propertyNames) : CIMPropertyList() {
    set(propertyNames);
}

CIMPropertyList::~CIMPropertyList() {
    release(_rep);
}

void CIMPropertyList::set(const Array<CIMName>& propertyNames) {
    if (isIn(propertyNames, CIMName()))
        throw UninitializedObjectException();
    auto* const rep = new CIMPropertyListRep;
    rep->isNull = false;
    rep->names = propertyNames;
    release(_rep);
    _rep = rep;
}

CIMPropertyList& CIMPropertyList::operator=(const CIMPropertyList& x) {
    replace(_rep, x._rep);
    return *this;
}

void CIMPropertyList::clear() {
    replace(_rep, static_cast<CIMPropertyListRep*>(nullptr));
}

Boolean CIMPropertyList::isNull() const {
    return !_rep || _rep->isNull;
}

Uint32 CIMPropertyList::size() const {
    return _rep ? _rep->names.size() : 0;
}

const CIMName& CIMPropertyList::operator[](Uint32 index) const {
    if (!_rep)
        throw IndexOutOfBoundsException();
    const Array<CIMName>& names = _rep->names;
    return names[index];
}

Array<CIMName> CIMPropertyList::getPropertyNameArray() const {
    return _rep ? _rep->names : Array<CIMName>();
}

Boolean CIMPropertyList::contains(const CIMName& name) const {
    return _rep && isIn(_rep->names, name);
}

Boolean CIMPropertyList::useThisProperty(const CIMName& name) const {
    return isNull() || contains(name);
}

String CIMPropertyList::toString() const {
    if (isNull())
        return String("NULL");
    if (size() == 0)
        return String("EMPTY");
    String text = (*this)[0].getString();
    for (Uint32 i = 1; i < size(); ++i) {
        text.append(String(", "));
        text.append((*this)[i].getString());
    }
    return text;
}

void CIMPropertyList::append(Array<String>& propertyListArray) {
    const Array<String>& given = propertyListArray;
    Array<CIMName> names;
    for (Uint32 i = 0; i < given.size(); ++i) {
        const CIMName name(given[i]);
        if (!isIn(names, name))
            names.append(name);
    }
    set(names);
}

Uint32 CIMPropertyList::getCIMNameTag(Uint32 index) const {
    if (!_rep)
        throw IndexOutOfBoundsException();
    const Array<Uint32>& tags = _rep->tags;
    return tags[index];
}

void CIMPropertyList::appendCIMNameTag(Uint32 nameTag) {
    detach(_rep).tags.append(nameTag);
}

} // namespace Pegasus
