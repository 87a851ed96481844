// The sorted sequence that snapshots share, against a std::map that does not.
#include "repository/SharedTree.h"
#include "repository/NamedList.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <utility>
#include <vector>

namespace embedded::repository {

namespace {

struct Entry {
    std::uint64_t number;
    int value;

    std::uint64_t key() const { return number; }
    bool operator==(const Entry& x) const { return number == x.number && value == x.value; }
};

using Tree = SharedTree<Entry>;
using Model = std::map<std::uint64_t, int>;

std::vector<Entry> entriesOf(const Tree& tree) {
    std::vector<Entry> entries;
    tree.forEach([&](const Entry& each) { entries.push_back(each); });
    return entries;
}

std::vector<Entry> entriesOf(const Model& model) {
    std::vector<Entry> entries;
    for (const auto& [number, value] : model)
        entries.push_back({number, value});
    return entries;
}

/// That `tree` has what `model` has, whichever way it is asked.
void expectSame(const Tree& tree, const Model& model) {
    const std::vector<Entry> expected = entriesOf(model);
    ASSERT_EQ(tree.size(), expected.size());
    EXPECT_EQ(entriesOf(tree), expected);
    for (std::size_t rank = 0; rank < expected.size(); ++rank) {
        ASSERT_EQ(tree[rank], expected[rank]) << rank;
        const Entry* found = tree.find(expected[rank].number);
        ASSERT_TRUE(found);
        ASSERT_EQ(*found, expected[rank]);
    }
}

/// Puts, replaces and erases at random; `density` is how many numbers there are to meet.
void changeAtRandom(Tree& tree, Model& model, std::mt19937& random, std::uint64_t density,
                    int changes) {
    for (int i = 0; i < changes; ++i) {
        const std::uint64_t number = random() % density;
        if (random() % 3 == 0) {
            EXPECT_EQ(tree.erase(number), model.erase(number) == 1);
        } else {
            tree.put({number, i});
            model[number] = i;
        }
    }
}

TEST(SharedTree, HasWhatWasPutAndNotErasedInOrder) {
    std::mt19937 random(1);
    for (const std::uint64_t density : {10U, 300U, 20000U}) {
        Tree tree;
        Model model;
        for (int round = 0; round < 10; ++round) {
            changeAtRandom(tree, model, random, density, 500);
            expectSame(tree, model);
        }
        EXPECT_FALSE(tree.find(density + 1));
    }
}

TEST(SharedTree, TakesEntriesInOrderAndAgainstIt) {
    Tree up;
    Tree down;
    Model model;
    for (int i = 0; i < 5000; ++i) {
        up.put({static_cast<std::uint64_t>(i), i});
        down.put({static_cast<std::uint64_t>(4999 - i), 4999 - i});
        model[static_cast<std::uint64_t>(i)] = i;
    }
    expectSame(up, model);
    expectSame(down, model);
}

TEST(SharedTree, EmptiedFromEitherSideTakesEntriesAgain) {
    for (const bool fromFront : {true, false}) {
        Tree tree;
        for (std::uint64_t i = 0; i < 3000; ++i)
            tree.put({i, 0});
        for (std::uint64_t i = 0; i < 3000; ++i)
            EXPECT_TRUE(tree.erase(fromFront ? i : 2999 - i));
        EXPECT_EQ(tree.size(), 0U);
        EXPECT_FALSE(tree.find(0));
        EXPECT_FALSE(tree.erase(0));
        tree.put({7, 7});
        expectSame(tree, {{7, 7}});
    }
}

TEST(SharedTree, CopiesStayAsTheyWere) {
    std::mt19937 random(2);
    Tree tree;
    Model model;
    std::vector<std::pair<Tree, Model>> kept;
    for (int round = 0; round < 30; ++round) {
        changeAtRandom(tree, model, random, 2000, 200);
        kept.emplace_back(tree, model);
    }
    for (const auto& [copy, then] : kept)
        expectSame(copy, then);
    // And the other way round: a copy may be changed as well.
    changeAtRandom(kept[5].first, kept[5].second, random, 2000, 200);
    expectSame(kept[5].first, kept[5].second);
    expectSame(kept[6].first, kept[6].second);
    expectSame(tree, model);
}

TEST(SharedTree, AnEntryThatIsChangedIsChangedInOneCopyOnly) {
    Tree tree;
    for (std::uint64_t i = 0; i < 1000; ++i)
        tree.put({i, 0});
    const Tree before = tree;
    tree.change(500)->value = 1;
    EXPECT_EQ(before.find(500)->value, 0);
    EXPECT_EQ(tree.find(500)->value, 1);
    EXPECT_FALSE(tree.change(1000));
}

TEST(SharedTree, ShowsWhatComesFromAKeyOnUntilToldToStop) {
    Tree tree;
    for (std::uint64_t i = 0; i < 1000; ++i)
        tree.put({i * 2, 0});
    for (const std::uint64_t from : {0U, 1U, 63U, 64U, 777U, 1998U, 1999U}) {
        std::vector<std::uint64_t> shown;
        tree.forEachFrom(from, [&](const Entry& each) {
            shown.push_back(each.number);
            return shown.size() < 3;
        });
        std::vector<std::uint64_t> expected;
        for (std::uint64_t i = (from + 1) / 2; i < 1000 && expected.size() < 3; ++i)
            expected.push_back(i * 2);
        EXPECT_EQ(shown, expected) << from;
        const Entry* const first = tree.firstFrom(from);
        EXPECT_EQ(first ? std::vector{first->number} : std::vector<std::uint64_t>{},
                  std::vector(expected.begin(), expected.begin() + (expected.empty() ? 0 : 1)))
            << from;
    }
}

struct Named {
    Pegasus::CIMName name;
    int value;

    const Pegasus::CIMName& getName() const { return name; }
};

TEST(NamedList, FindsByNameWhateverItsCaseAndKeepsTheOrder) {
    NamedList<Named> list;
    list.add({"One", 1});
    list.add({"Two", 2});
    list.add({"Three", 3});
    const NamedList<Named> before = list;
    list.remove(Pegasus::CIMName("oNE"));
    list.remove(Pegasus::CIMName("Nowhere"));
    list.add({"ONE", 4});
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[0].value, 2);
    EXPECT_EQ(list[1].value, 3);
    EXPECT_EQ(list.find(Pegasus::CIMName("one"))->value, 4);
    EXPECT_FALSE(list.find(Pegasus::CIMName("Four")));
    EXPECT_EQ(before.find(Pegasus::CIMName("one"))->value, 1);
    EXPECT_EQ(before[0].value, 1);
}

} // namespace
} // namespace embedded::repository
