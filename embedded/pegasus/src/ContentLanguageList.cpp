#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/Exception.h>

#include <vector>

namespace Pegasus {

struct ContentLanguageListRep {
    const LanguageTag& at(Uint32 index) const {
        if (index >= tags.size())
            throw IndexOutOfBoundsException();
        return tags[index];
    }

    std::vector<LanguageTag> tags;
};

ContentLanguageList::ContentLanguageList() : _rep(std::make_unique<ContentLanguageListRep>()) {
}

ContentLanguageList::ContentLanguageList(const ContentLanguageList& contentLanguages)
    : _rep(std::make_unique<ContentLanguageListRep>(*contentLanguages._rep)) {
}

ContentLanguageList::~ContentLanguageList() = default;

ContentLanguageList& ContentLanguageList::operator=(const ContentLanguageList& contentLanguages) {
    *_rep = *contentLanguages._rep;
    return *this;
}

Uint32 ContentLanguageList::size() const {
    return static_cast<Uint32>(_rep->tags.size());
}

LanguageTag ContentLanguageList::getLanguageTag(Uint32 index) const {
    return _rep->at(index);
}

void ContentLanguageList::append(const LanguageTag& languageTag) {
    if (languageTag.toString() == "*")
        throw Exception("invalid contentlanguage header: Invalid language tag \"*\".");
    _rep->tags.push_back(languageTag);
}

void ContentLanguageList::remove(Uint32 index) {
    _rep->at(index);
    _rep->tags.erase(_rep->tags.begin() + index);
}

Uint32 ContentLanguageList::find(const LanguageTag& languageTag) const {
    for (Uint32 index = 0; index < size(); ++index)
        if (_rep->tags[index] == languageTag)
            return index;
    return PEG_NOT_FOUND;
}

void ContentLanguageList::clear() {
    _rep->tags.clear();
}

Boolean ContentLanguageList::operator==(const ContentLanguageList& contentLanguages) const {
    return _rep->tags == contentLanguages._rep->tags;
}

Boolean ContentLanguageList::operator!=(const ContentLanguageList& contentLanguages) const {
    return !(*this == contentLanguages);
}

} // namespace Pegasus
