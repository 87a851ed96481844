#include "Throws.h"

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/LanguageTag.h>

using namespace Pegasus;
using namespace apitest;

namespace {

TEST(LanguageTag, FallsIntoLanguageCountryAndVariant) {
    const struct {
        const char* tag;
        const char* language;
        const char* country;
        const char* variant;
    } cases[] = {
        {"en", "en", "", ""},
        {"EN-us", "EN", "us", ""},
        {"en-US-x-y", "en", "US", "x-y"},
        {"en-US-1", "en", "US", "1"},
        {"en-12", "en", "12", ""},
        {"zh-Hant-TW", "zh", "", "Hant-TW"},
        {"abc", "abc", "", ""},
        {"ab-12345678", "ab", "", "12345678"},
        {"i-klingon", "", "", ""},
        {"x", "", "", ""},
        {"*", "", "", ""},
    };
    for (const auto& c : cases) {
        const LanguageTag tag{String(c.tag)};
        EXPECT_EQ(text(tag.getLanguage()), c.language) << c.tag;
        EXPECT_EQ(text(tag.getCountry()), c.country) << c.tag;
        EXPECT_EQ(text(tag.getVariant()), c.variant) << c.tag;
        EXPECT_EQ(text(tag.toString()), c.tag);
    }
}

TEST(LanguageTag, RejectsWhatIsNoTag) {
    for (const std::string tag : {"", "123", "9a-en", "en_US", "en US", "en-", "-en", "en--us",
                                  "abcdefghi", "ab-123456789", "**", "en-*", "*-en", "\xc3\xa9"}) {
        EXPECT_TRUE(throws<Exception>([&] { LanguageTag t{String(tag.c_str())}; },
                                      "Malformed language tag:" + tag));
    }
    for (const std::string tag : {"e", "abcd", "abcdefgh", "a-b", "en-u", "x-y", "X", "I-abc"}) {
        EXPECT_TRUE(throws<Exception>([&] { LanguageTag t{String(tag.c_str())}; },
                                      "Invalid language tag \"" + tag + "\"."));
    }
}

TEST(LanguageTag, IsEqualIgnoringCase) {
    EXPECT_TRUE(LanguageTag("en-US") == LanguageTag("EN-us"));
    EXPECT_TRUE(LanguageTag("en") != LanguageTag("fr"));
}

TEST(LanguageTag, IsUninitializedUntilItIsAssigned) {
    LanguageTag none;
    const LanguageTag some("en");
    expectAllUninitialized({
        {"getLanguage", [&] { none.getLanguage(); }},
        {"getCountry", [&] { none.getCountry(); }},
        {"getVariant", [&] { none.getVariant(); }},
        {"toString", [&] { none.toString(); }},
        {"==", [&] { (void)(none == some); }},
        {"== the other", [&] { (void)(some == none); }},
    });
    none = some;
    EXPECT_TRUE(none == some);
}

TEST(AcceptLanguageList, HasTheMostWantedFirst) {
    AcceptLanguageList list;
    list.insert(LanguageTag("en"), 0.5F);
    list.insert(LanguageTag("fr"), 0.7F);
    list.insert(LanguageTag("de"), 0.5F);
    list.insert(LanguageTag("*"), 0.0F);
    list.insert(LanguageTag("es"), 1.0F);
    std::string order;
    for (Uint32 index = 0; index < list.size(); ++index)
        order += text(list.getLanguageTag(index).toString()) + " ";
    EXPECT_EQ(order, "es fr en de * ");
    EXPECT_EQ(list.getQualityValue(1), 0.7F);
    EXPECT_EQ(list.find(LanguageTag("DE")), 3U);
    EXPECT_EQ(list.find(LanguageTag("ja")), PEG_NOT_FOUND);
    list.remove(0);
    EXPECT_EQ(list.find(LanguageTag("DE")), 2U);
}

TEST(AcceptLanguageList, TakesQualitiesFromZeroToOne) {
    AcceptLanguageList list;
    for (const Real32 quality : {-0.1F, 1.1F}) {
        EXPECT_TRUE(throws<Exception>([&] { list.insert(LanguageTag("en"), quality); },
                                      "invalid acceptlanguage header: "
                                      "AcceptLanguage contains an invalid quality value"));
    }
    EXPECT_EQ(list.size(), 0U);
    EXPECT_TRUE(throwsOutOfBounds([&] { list.getLanguageTag(0); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { list.getQualityValue(0); }));
}

/// Of a `list` to which `add` adds a tag.
template <class List, class Add>
void expectIndependentCopies(List list, Add add) {
    add(list, LanguageTag("en"));
    List copy(list);
    EXPECT_TRUE(copy == list);
    add(copy, LanguageTag("fr"));
    EXPECT_TRUE(copy != list);
    EXPECT_EQ(list.size(), 1U);
    copy = list;
    EXPECT_TRUE(copy == list);
    copy.clear();
    EXPECT_EQ(copy.size(), 0U);
}

TEST(LanguageLists, AreValuesWhoseCopiesAreIndependent) {
    const auto insert = [](auto& list, const LanguageTag& tag) { list.insert(tag, 0.5F); };
    const auto append = [](auto& list, const LanguageTag& tag) { list.append(tag); };
    expectIndependentCopies(AcceptLanguageList(), insert);
    expectIndependentCopies(ContentLanguageList(), append);
}

TEST(AcceptLanguageList, IsEqualWithTheSameQualitiesOnly) {
    AcceptLanguageList list, other;
    list.insert(LanguageTag("en"), 0.5F);
    other.insert(LanguageTag("en"), 0.6F);
    EXPECT_FALSE(other == list);
}

TEST(ContentLanguageList, KeepsTheOrderOfItsTags) {
    ContentLanguageList list;
    list.append(LanguageTag("fr"));
    list.append(LanguageTag("en"));
    EXPECT_EQ(list.size(), 2U);
    EXPECT_EQ(text(list.getLanguageTag(1).toString()), "en");
    EXPECT_EQ(list.find(LanguageTag("EN")), 1U);
    EXPECT_EQ(list.find(LanguageTag("ja")), PEG_NOT_FOUND);
    EXPECT_TRUE(throwsOutOfBounds([&] { list.getLanguageTag(2); }));
    EXPECT_TRUE(throws<Exception>([&] { list.append(LanguageTag("*")); },
                                  "invalid contentlanguage header: Invalid language tag \"*\"."));
    list.remove(0);
    EXPECT_EQ(text(list.getLanguageTag(0).toString()), "en");
}

} // namespace
