#include "text/KeyedHash.h"

#include "text/PlaceIndex.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace embedded::text {
namespace {

TEST(KeyedHash, TellsTextsApartByEachByteAndByTheirLength) {
    std::set<std::uint64_t> hashes;
    std::size_t texts = 0;
    for (std::size_t size = 0; size < 20; ++size) {
        std::string text(size, '\0');
        hashes.insert(keyedHash(text));
        ++texts;
        for (char& byte : text) {
            for (const char other : {'\1', '\x80'}) {
                byte = other;
                EXPECT_EQ(keyedHash(text), keyedHash(std::string(text)));
                hashes.insert(keyedHash(text));
                ++texts;
            }
            byte = '\0';
        }
    }
    EXPECT_EQ(hashes.size(), texts);
}

TEST(KeyedHash, SpreadsTextsThatAreAlike) {
    constexpr unsigned rooms = 1 << 10;
    std::set<std::uint64_t> low, high;
    for (unsigned i = 0; i < 8 * rooms; ++i) {
        const std::uint64_t hash = keyedHash("Name" + std::to_string(i));
        low.insert(hash % rooms);
        high.insert(hash >> 54U);
    }
    // Of so many balls, one in 3000 rooms stays empty.
    EXPECT_GT(low.size(), rooms - 20);
    EXPECT_GT(high.size(), rooms - 20);
}

TEST(PlaceIndex, TellsPlacesWithOneHashApart) {
    PlaceIndex index;
    for (std::uint32_t place = 0; place < 5; ++place)
        index.add(place % 2, place);
    EXPECT_EQ(index.size(), 5U);
    EXPECT_EQ(index.find(
                  1, [](std::uint32_t place) { return place == 3; }),
              3U);
    EXPECT_EQ(index.find(
                  0, [](std::uint32_t place) { return place == 3; }),
              std::nullopt);
    EXPECT_EQ(index.find(2, [](std::uint32_t) { return true; }), std::nullopt);
}

} // namespace
} // namespace embedded::text
