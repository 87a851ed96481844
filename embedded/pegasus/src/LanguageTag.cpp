#include <Pegasus/Common/LanguageTag.h>

#include "RepAccess.h"
#include "text/Ascii.h"

#include <vector>

namespace Pegasus {

struct LanguageTagRep {
    String tag;
    String language;
    String country;
    String variant;
};

namespace {

using embedded::text::isDigit;
using embedded::text::isLetter;

constexpr Uint16 hyphen = '-';
constexpr Uint32 longestSubtag = 8;

bool isLetterOrDigit(Uint16 c) { return isLetter(c) || isDigit(c); }

std::vector<String> split(const String& tag) {
    std::vector<String> subtags;
    Uint32 begin = 0;
    for (Uint32 end = 0; end <= tag.size(); ++end) {
        if (end < tag.size() && Uint16(tag[end]) != hyphen)
            continue;
        subtags.push_back(tag.subString(begin, end - begin));
        begin = end + 1;
    }
    return subtags;
}

template <class Accepts>
bool isSubtag(const String& text, Accepts accepts) {
    if (text.size() == 0 || text.size() > longestSubtag)
        return false;
    for (Uint32 index = 0; index < text.size(); ++index)
        if (!accepts(Uint16(text[index])))
            return false;
    return true;
}

void checkSyntax(const String& tag, const std::vector<String>& subtags) {
    bool wellFormed = isSubtag(subtags.front(), isLetter<Uint16>);
    for (const String& subtag : subtags)
        wellFormed = wellFormed && isSubtag(subtag, isLetterOrDigit);
    if (!wellFormed)
        throw Exception("Malformed language tag:" + tag);
}

LanguageTagRep parse(const String& tag) {
    LanguageTagRep rep;
    rep.tag = tag;
    if (tag == "*")
        return rep;
    const std::vector<String> subtags = split(tag);
    checkSyntax(tag, subtags);

    const String& first = subtags[0];
    const bool hasLanguage = first.size() == 2 || first.size() == 3;
    // Registered by IANA ("i") or private ("x").
    const bool isSpecial = first == "i" || first == "x";
    const bool secondTooShort = subtags.size() > 1 && subtags[1].size() == 1;
    if ((!hasLanguage && !isSpecial) || secondTooShort)
        throw Exception("Invalid language tag \"" + tag + "\".");
    if (!hasLanguage)
        return rep;

    rep.language = first;
    Uint32 variantBegin = first.size() + 1;
    if (subtags.size() > 1 && subtags[1].size() == 2) {
        rep.country = subtags[1];
        variantBegin += rep.country.size() + 1;
    }
    if (variantBegin < tag.size())
        rep.variant = tag.subString(variantBegin);
    return rep;
}

} // namespace

LanguageTag::LanguageTag(const String& languageTagString)
    : _rep(std::make_shared<LanguageTagRep>(parse(languageTagString))) {}

String LanguageTag::getLanguage() const { return initialized(_rep).language; }

String LanguageTag::getCountry() const { return initialized(_rep).country; }

String LanguageTag::getVariant() const { return initialized(_rep).variant; }

String LanguageTag::toString() const { return initialized(_rep).tag; }

Boolean LanguageTag::operator==(const LanguageTag& languageTag) const {
    return String::equalNoCase(initialized(_rep).tag, initialized(languageTag._rep).tag);
}

} // namespace Pegasus
