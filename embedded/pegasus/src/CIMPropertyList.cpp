#include "CIMPropertyListRep.h"

#include "embedding/Text.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>

namespace Pegasus {

const CIMPropertyListRep& CIMPropertyListRep::of(const CIMPropertyList& list) {
    static const CIMPropertyListRep null;
    return list._rep ? *list._rep : null;
}

Uint32 CIMPropertyListRep::find(const CIMName& name) const {
    const CIMName* const all = names.getData();
    const auto isIt = [&](Uint32 place) { return all[place].equal(name); };
    if (places.size() != 0)
        return places.find(embedding::foldedHash(name.getString()), isIt).value_or(PEG_NOT_FOUND);
    for (Uint32 place = 0; place < names.size(); ++place)
        if (isIt(place))
            return place;
    return PEG_NOT_FOUND;
}

void CIMPropertyListRep::index() {
    constexpr Uint32 few = 16; // are found faster by looking at each
    const CIMName* const all = names.getData();
    for (auto next = static_cast<Uint32>(places.size()); names.size() > few && next < names.size();
         ++next)
        places.add(embedding::foldedHash(all[next].getString()), next);
}

CIMPropertyList::CIMPropertyList() : _rep(nullptr) {}

CIMPropertyList::CIMPropertyList(const CIMPropertyList& x) : _rep(share(x._rep)) {}

CIMPropertyList::CIMPropertyList(const Array<CIMName>& propertyNames) : CIMPropertyList() {
    set(propertyNames);
}

CIMPropertyList::~CIMPropertyList() { release(_rep); }

void CIMPropertyList::set(const Array<CIMName>& propertyNames) {
    const CIMName* const given = propertyNames.getData();
    if (std::any_of(given, given + propertyNames.size(),
                    [](const CIMName& name) { return name.isNull(); }))
        throw UninitializedObjectException();
    CIMPropertyList list;
    CIMPropertyListRep& rep = detach(list._rep);
    rep.isNull = false;
    rep.names = propertyNames;
    rep.index();
    *this = list;
}

CIMPropertyList& CIMPropertyList::operator=(const CIMPropertyList& x) {
    replace(_rep, x._rep);
    return *this;
}

void CIMPropertyList::clear() { replace(_rep, static_cast<CIMPropertyListRep*>(nullptr)); }

Boolean CIMPropertyList::isNull() const { return !_rep || _rep->isNull; }

Uint32 CIMPropertyList::size() const { return _rep ? _rep->names.size() : 0; }

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
    return CIMPropertyListRep::of(*this).find(name) != PEG_NOT_FOUND;
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
    CIMPropertyList list;
    CIMPropertyListRep& rep = detach(list._rep);
    rep.isNull = false;
    for (Uint32 i = 0; i < given.size(); ++i) {
        const CIMName name(given[i]);
        if (rep.find(name) == PEG_NOT_FOUND) {
            rep.names.append(name);
            rep.index();
        }
    }
    *this = list;
}

Uint32 CIMPropertyList::getCIMNameTag(Uint32 index) const {
    if (!_rep)
        throw IndexOutOfBoundsException();
    const Array<Uint32>& tags = _rep->tags;
    return tags[index];
}

void CIMPropertyList::appendCIMNameTag(Uint32 nameTag) { detach(_rep).tags.append(nameTag); }

} // namespace Pegasus
