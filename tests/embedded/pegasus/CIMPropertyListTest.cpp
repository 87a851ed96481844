#include "Throws.h"

#include <Pegasus/Common/CIMPropertyList.h>

#include <string>

using namespace Pegasus;
using apitest::text;
using apitest::throws;
using apitest::throwsOutOfBounds;
using apitest::throwsUninitialized;

namespace {

CIMPropertyList listOf(std::initializer_list<const char*> names) {
    Array<CIMName> array;
    for (const char* name : names)
        array.append(name);
    return CIMPropertyList(array);
}

TEST(CIMPropertyList, MeansAllWhenNullAndNoneWhenEmpty) {
    const CIMPropertyList all;
    EXPECT_TRUE(all.isNull());
    EXPECT_EQ(all.size(), 0U);
    EXPECT_TRUE(all.useThisProperty("any"));
    EXPECT_FALSE(all.contains("any"));
    EXPECT_EQ(text(all.toString()), "NULL");
    const CIMPropertyList none = listOf({});
    EXPECT_FALSE(none.isNull());
    EXPECT_EQ(none.size(), 0U);
    EXPECT_FALSE(none.useThisProperty("any"));
    EXPECT_EQ(text(none.toString()), "EMPTY");
}

TEST(CIMPropertyList, KeepsNamesInOrderAndIgnoresTheirCase) {
    const CIMPropertyList list = listOf({"B", "a", "b"});
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(text(list[0].getString()), "B");
    EXPECT_EQ(text(list.toString()), "B, a, b");
    EXPECT_EQ(list.getPropertyNameArray().size(), 3U);
    EXPECT_TRUE(list.contains("A"));
    EXPECT_TRUE(list.useThisProperty("A"));
    EXPECT_FALSE(list.contains("c"));
    EXPECT_FALSE(list.useThisProperty("c"));
    EXPECT_TRUE(throwsOutOfBounds([&] { static_cast<void>(list[3]); }));
    EXPECT_TRUE(throwsOutOfBounds([] { static_cast<void>(CIMPropertyList()[0]); }));
}

TEST(CIMPropertyList, RejectsNullNames) {
    EXPECT_TRUE(throwsUninitialized([] { CIMPropertyList list{Array<CIMName>(1)}; }));
    CIMPropertyList list;
    EXPECT_TRUE(throwsUninitialized([&] { list.set(Array<CIMName>(1)); }));
}

TEST(CIMPropertyList, ChangesWithoutItsCopies) {
    const CIMPropertyList original = listOf({"a"});
    CIMPropertyList copy(original);
    copy.clear();
    EXPECT_TRUE(copy.isNull());
    EXPECT_EQ(text(original.toString()), "a");
    copy = original;
    copy.set(Array<CIMName>());
    EXPECT_EQ(text(copy.toString()), "EMPTY");
    EXPECT_EQ(text(original.toString()), "a");
}

TEST(CIMPropertyList, TakesTextsEachOnce) {
    CIMPropertyList list = listOf({"old"});
    Array<String> names;
    for (const char* name : {"x", "X", "b"})
        names.append(name);
    list.append(names);
    EXPECT_EQ(text(list.toString()), "x, b");
    names.append("1x");
    EXPECT_TRUE(
        throws<InvalidNameException>([&] { list.append(names); }, "The CIM name is not valid: 1x"));
}

TEST(CIMPropertyList, FindsNamesInListsOfEachLength) {
    Array<String> texts;
    Array<CIMName> names;
    for (Uint32 i = 0; i < 40; ++i) {
        const std::string number = std::to_string(i);
        names.append(CIMName(("n" + number).c_str()));
        texts.append(("n" + number).c_str());
        texts.append(("N" + number).c_str());
        CIMPropertyList once;
        once.append(texts);
        ASSERT_EQ(once.size(), i + 1);
        const CIMPropertyList given(names);
        for (Uint32 j = 0; j < 41; ++j) {
            const CIMName name(("N" + std::to_string(j)).c_str());
            EXPECT_EQ(given.contains(name), j <= i);
            EXPECT_EQ(once.contains(name), j <= i);
            EXPECT_TRUE(j > i || once[j] == name);
        }
    }
}

TEST(CIMPropertyList, CarriesTags) {
    CIMPropertyList list = listOf({"a"});
    EXPECT_TRUE(throwsOutOfBounds([&] { list.getCIMNameTag(0); }));
    list.appendCIMNameTag(77);
    EXPECT_EQ(list.getCIMNameTag(0), 77U);
    EXPECT_TRUE(throwsOutOfBounds([&] { list.getCIMNameTag(1); }));
}

} // namespace
