#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>

namespace Pegasus {

namespace {

template <class Element>
const Element& elementAt(const std::vector<Element>& elements, Uint32 index) {
    if (index >= elements.size())
        throw IndexOutOfBoundsException();
    return elements[index];
}

template <class Element>
void removeAt(std::vector<Element>& elements, Uint32 index) {
    elementAt(elements, index);
    elements.erase(elements.begin() + index);
}

template <class Element, class IsIt>
Uint32 indexOf(const std::vector<Element>& elements, IsIt isIt) {
    const auto found = std::find_if(elements.begin(), elements.end(), isIt);
    return found == elements.end() ? PEG_NOT_FOUND : static_cast<Uint32>(found - elements.begin());
}

} // namespace

const AcceptLanguageList::Entry& AcceptLanguageList::at(Uint32 index) const {
    return elementAt(_entries, index);
}

void AcceptLanguageList::insert(const LanguageTag& languageTag, Real32 qualityValue) {
    // Written so that it holds for a NaN, too.
    if (!(qualityValue >= 0 && qualityValue <= 1))
        throw Exception("invalid acceptlanguage header: "
                        "AcceptLanguage contains an invalid quality value");
    const auto lower = std::find_if(_entries.begin(), _entries.end(), [&](const Entry& entry) {
        return entry.second < qualityValue;
    });
    _entries.insert(lower, {languageTag, qualityValue});
}

void AcceptLanguageList::remove(Uint32 index) { removeAt(_entries, index); }

Uint32 AcceptLanguageList::find(const LanguageTag& languageTag) const {
    return indexOf(
        _entries, [&](const Entry& entry) { return entry.first == languageTag; });
}

LanguageTag ContentLanguageList::getLanguageTag(Uint32 index) const {
    return elementAt(_tags, index);
}

void ContentLanguageList::append(const LanguageTag& languageTag) {
    if (languageTag.toString() == "*")
        throw Exception("invalid contentlanguage header: Invalid language tag \"*\".");
    _tags.push_back(languageTag);
}

void ContentLanguageList::remove(Uint32 index) { removeAt(_tags, index); }

Uint32 ContentLanguageList::find(const LanguageTag& languageTag) const {
    return indexOf(
        _tags, [&](const LanguageTag& tag) { return tag == languageTag; });
}

} // namespace Pegasus
