#include "Throws.h"

#include <Pegasus/Common/Array.h>

using namespace Pegasus;
using apitest::text;
using apitest::throwsOutOfBounds;

namespace {

using Numbers = Array<Uint32>;

std::vector<Uint32> contents(const Numbers& array) {
    std::vector<Uint32> result;
    for (Uint32 i = 0; i < array.size(); ++i)
        result.push_back(array[i]);
    return result;
}

Numbers counting(Uint32 size) {
    Numbers array;
    for (Uint32 i = 1; i <= size; ++i)
        array.append(i);
    return array;
}

TEST(Array, IsMadeOfDefaultsOrCopies) {
    const Uint32 items[] = {1, 2, 3};
    EXPECT_EQ(contents(Numbers()), std::vector<Uint32>());
    EXPECT_EQ(contents(Numbers(2)), (std::vector<Uint32>{0, 0}));
    EXPECT_EQ(contents(Numbers(2, 7)), (std::vector<Uint32>{7, 7}));
    EXPECT_EQ(contents(Numbers(items, 3)), (std::vector<Uint32>{1, 2, 3}));
}

TEST(Array, GrowsAtBothEndsAndInBetween) {
    const Uint32 items[] = {8, 9};
    Numbers array = counting(2);
    array.append(3);
    array.append(items, 2);
    EXPECT_EQ(contents(array), (std::vector<Uint32>{1, 2, 3, 8, 9}));
    array.prepend(0);
    array.prepend(items, 2);
    EXPECT_EQ(contents(array), (std::vector<Uint32>{8, 9, 0, 1, 2, 3, 8, 9}));
    array = counting(2);
    array.insert(1, 5);
    array.insert(0, items, 2);
    array.insert(array.size(), 6);
    EXPECT_EQ(contents(array), (std::vector<Uint32>{8, 9, 1, 5, 2, 6}));
    array = counting(1);
    array.grow(2, 4);
    EXPECT_EQ(contents(array), (std::vector<Uint32>{1, 4, 4}));
    array.appendArray(counting(2));
    EXPECT_EQ(contents(array), (std::vector<Uint32>{1, 4, 4, 1, 2}));
}

TEST(Array, TakesItsOwnElements) {
    Array<String> array;
    array.append("x");
    for (int i = 0; i < 20; ++i)
        array.append(array[0]);
    array.appendArray(array);
    ASSERT_EQ(array.size(), 42U);
    for (Uint32 i = 0; i < array.size(); ++i)
        EXPECT_EQ(text(array[i]), "x");
}

TEST(Array, RemovesOneOrSeveral) {
    Numbers array = counting(5);
    array.remove(1);
    EXPECT_EQ(contents(array), (std::vector<Uint32>{1, 3, 4, 5}));
    array.remove(1, 2);
    EXPECT_EQ(contents(array), (std::vector<Uint32>{1, 5}));
    array.remove(0, 0);
    EXPECT_EQ(contents(array), (std::vector<Uint32>{1, 5}));
    array.remove(0, 2);
    EXPECT_EQ(array.size(), 0U);
    array = counting(3);
    array.clear();
    EXPECT_EQ(array.size(), 0U);
}

TEST(Array, RejectsWhatLiesBehindItsEnd) {
    Numbers array = counting(2);
    const Numbers constant = array;
    EXPECT_TRUE(throwsOutOfBounds([&] { static_cast<void>(array[2]); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { static_cast<void>(constant[2]); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { static_cast<void>(array[PEG_NOT_FOUND]); }));
    EXPECT_TRUE(throwsOutOfBounds([] { static_cast<void>(Numbers()[0]); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { array.insert(3, 9); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { array.remove(0, 4); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { array.remove(3); }));
    EXPECT_EQ(contents(array), (std::vector<Uint32>{1, 2}));
}

TEST(Array, SharesItsElementsUntilOneIsChanged) {
    const auto changed = [](auto change) {
        Numbers array = counting(3);
        const Numbers copy(array);
        EXPECT_EQ(array.getData(), copy.getData());
        change(array);
        EXPECT_EQ(contents(copy), (std::vector<Uint32>{1, 2, 3}));
        return contents(array);
    };
    EXPECT_EQ(changed([](Numbers& x) { x[0] = 9; }), (std::vector<Uint32>{9, 2, 3}));
    EXPECT_EQ(changed([](Numbers& x) { x.append(4); }), (std::vector<Uint32>{1, 2, 3, 4}));
    EXPECT_EQ(changed([](Numbers& x) { x.remove(0); }), (std::vector<Uint32>{2, 3}));
    EXPECT_EQ(changed([](Numbers& x) { x.prepend(0); }), (std::vector<Uint32>{0, 1, 2, 3}));
    EXPECT_EQ(changed([](Numbers& x) { x.grow(1, 5); }), (std::vector<Uint32>{1, 2, 3, 5}));
    EXPECT_EQ(changed([](Numbers& x) { x.clear(); }), (std::vector<Uint32>{}));
    EXPECT_EQ(changed([](Numbers& x) { x.reserveCapacity(50); }), (std::vector<Uint32>{1, 2, 3}));
}

TEST(Array, Swaps) {
    Numbers x = counting(1);
    Numbers y = counting(2);
    x.swap(y);
    EXPECT_EQ(contents(x), (std::vector<Uint32>{1, 2}));
    EXPECT_EQ(contents(y), (std::vector<Uint32>{1}));
}

TEST(Array, HasRoomForWhatIsToCome) {
    Numbers array;
    array.reserveCapacity(10);
    EXPECT_GE(array.getCapacity(), 10U);
    EXPECT_EQ(array.size(), 0U);
    array.append(1);
    const Uint32* const data = array.getData();
    for (Uint32 i = 1; i < 10; ++i)
        array.append(i);
    EXPECT_EQ(array.getData(), data);
}

TEST(Array, HasBooleansThatCanBePointedAt) {
    Array<Boolean> array(2, true);
    Boolean& second = array[1];
    second = false;
    EXPECT_TRUE(array.getData()[0]);
    EXPECT_FALSE(array.getData()[1]);
}

} // namespace
