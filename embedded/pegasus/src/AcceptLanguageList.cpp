#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <vector>

namespace Pegasus {

namespace {

struct Entry {
    LanguageTag tag;
    Real32 quality;

    bool operator==(const Entry& x) const { return quality == x.quality && tag == x.tag; }
};

} // namespace

struct AcceptLanguageListRep {
    const Entry& at(Uint32 index) const {
        if (index >= entries.size())
            throw IndexOutOfBoundsException();
        return entries[index];
    }

    std::vector<Entry> entries; // the highest quality first
};

AcceptLanguageList::AcceptLanguageList() : _rep(std::make_unique<AcceptLanguageListRep>()) {
}

AcceptLanguageList::AcceptLanguageList(const AcceptLanguageList& acceptLanguages)
    : _rep(std::make_unique<AcceptLanguageListRep>(*acceptLanguages._rep)) {
}

AcceptLanguageList::~AcceptLanguageList() = default;

AcceptLanguageList& AcceptLanguageList::operator=(const AcceptLanguageList& acceptLanguages) {
    *_rep = *acceptLanguages._rep;
    return *this;
}

Uint32 AcceptLanguageList::size() const {
    return static_cast<Uint32>(_rep->entries.size());
}

LanguageTag AcceptLanguageList::getLanguageTag(Uint32 index) const {
    return _rep->at(index).tag;
}

Real32 AcceptLanguageList::getQualityValue(Uint32 index) const {
    return _rep->at(index).quality;
}

void AcceptLanguageList::insert(const LanguageTag& languageTag, Real32 qualityValue) {
    // Written so that it holds for a NaN, too.
    if (!(qualityValue >= 0 && qualityValue <= 1))
        throw Exception("invalid acceptlanguage header: "
                        "AcceptLanguage contains an invalid quality value");
    std::vector<Entry>& entries = _rep->entries;
    const auto lower = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
        return entry.quality < qualityValue;
    });
    entries.insert(lower, Entry{languageTag, qualityValue});
}

void AcceptLanguageList::remove(Uint32 index) {
    _rep->at(index);
    _rep->entries.erase(_rep->entries.begin() + index);
}

Uint32 AcceptLanguageList::find(const LanguageTag& languageTag) const {
    for (Uint32 index = 0; index < size(); ++index)
        if (_rep->entries[index].tag == languageTag)
            return index;
    return PEG_NOT_FOUND;
}

void AcceptLanguageList::clear() {
    _rep->entries.clear();
}

Boolean AcceptLanguageList::operator==(const AcceptLanguageList& acceptLanguages) const {
    return _rep->entries == acceptLanguages._rep->entries;
}

Boolean AcceptLanguageList::operator!=(const AcceptLanguageList& acceptLanguages) const {
    return !(*this == acceptLanguages);
}

} // namespace Pegasus
