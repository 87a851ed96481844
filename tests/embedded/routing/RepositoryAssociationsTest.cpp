#include "routing/RepositoryAssociations.h"

#include "Server.h"

#include <gtest/gtest.h>

namespace embedded::routing::test {
namespace {

using namespace Pegasus;

class RepositoryAssociationsTest : public testing::Test {
  protected:
    RepositoryAssociationsTest() {
        fill(repository, "instance of TST_Base as $A { Id = \"a\"; };\n"
                         "instance of TST_Leaf as $B { Id = \"b\"; };\n"
                         "instance of TST_Middle as $C { Id = \"c\"; };\n"
                         "instance of TST_Link { Left = $A; Right = $B; };\n"
                         "instance of TST_Link { Left = $C; Right = $A; };\n"
                         "instance of TST_SubLink { Left = $A; Right = $B; };\n"
                         "instance of TST_Link { Left = $C; Right = $C; };\n"
                         "instance of TST_Link {"
                         " Left = \"root/elsewhere:TST_Base.Id=\\\"a\\\"\"; Right = $C; };\n");
    }

    Texts farInstances(const CIMObjectPath& source, const TraversalFilters& filters = {}) {
        Texts result;
        for (const CIMObjectPath& path :
             RepositoryAssociations(repository.view(), nameSpace, source, filters)
                 .farInstances(classes)) {
            const std::string prefix =
                path.getNameSpace().equal("root/elsewhere") ? "elsewhere " : "";
            result.push_back(prefix + text(path.getClassName().getString()) + " " +
                             text(path.getKeyBindings()[0].getValue()));
        }
        return result;
    }
    std::size_t instances(const CIMObjectPath& source, const TraversalFilters& filters = {}) {
        return RepositoryAssociations(repository.view(), nameSpace, source, filters)
            .instances(classes)
            .size();
    }
    Texts farClasses(const char* source, const TraversalFilters& filters = {}) {
        Texts result;
        for (const CIMName& name :
             RepositoryAssociations(repository.view(), nameSpace,
                                    CIMObjectPath("", {}, CIMName(source)), filters)
                 .farClasses({CIMName("TST_Link"), CIMName("TST_OtherLink")}))
            result.push_back(text(name.getString()));
        return result;
    }

    repository::Repository repository;
    const RepositoryAssociations::Names classes{CIMName("TST_Link"), CIMName("TST_SubLink")};
    const CIMObjectPath a = pathOf("TST_Base", "a");
};

TEST_F(RepositoryAssociationsTest, EveryFarEndIsThereOnce) {
    EXPECT_EQ((Texts{"TST_Leaf b", "TST_Middle c"}), farInstances(a));
    EXPECT_EQ(3U, instances(a));
}

TEST_F(RepositoryAssociationsTest, OfManyFarEndsEachIsThereOnceWhereItComesFirst) {
    Texts expected;
    std::string mof = "instance of TST_Base as $Hub { Id = \"hub\"; };\n";
    const auto link = [&](const char* association, int number) {
        mof += std::string("instance of ") + association +
               " { Left = $Hub; Right = \"TST_Base.Id=\\\"" + std::to_string(number) +
               "\\\"\"; };\n";
    };
    for (int number = 0; number < 300; ++number) {
        link("TST_Link", number);
        link("TST_SubLink", 299 - number);
        expected.push_back("TST_Base " + std::to_string(number));
    }
    fill(repository, mof);
    EXPECT_EQ(expected, farInstances(pathOf("TST_Base", "hub")));
}

TEST_F(RepositoryAssociationsTest, OnlyTheClassesGivenAreLookedAt) {
    const RepositoryAssociations associations(repository.view(), nameSpace, a, {});
    EXPECT_EQ(2U, associations.instances({CIMName("TST_Link")}).size());
    EXPECT_EQ(1U, associations.instances({CIMName("TST_SubLink")}).size());
    EXPECT_EQ(0U, associations.instances({}).size());
}

TEST_F(RepositoryAssociationsTest, HostNamespaceAndCaseOfTheSourceDoNotMatter) {
    EXPECT_EQ(3U, instances(CIMObjectPath("client", nameSpace, CIMName("tst_base"),
                                          pathOf("x", "a").getKeyBindings())));
    EXPECT_EQ(0U, instances(pathOf("TST_Base", "A")));
}

TEST_F(RepositoryAssociationsTest, AReferenceIntoAnotherNamespaceIsAnotherObject) {
    EXPECT_EQ((Texts{"TST_Base a", "TST_Middle c", "elsewhere TST_Base a"}),
              farInstances(pathOf("TST_Middle", "c")));
}

TEST_F(RepositoryAssociationsTest, AnObjectMayBeLinkedToItself) {
    EXPECT_EQ(3U, instances(pathOf("TST_Middle", "c")));
}

TEST_F(RepositoryAssociationsTest, FiltersNarrowTheFarEnds) {
    EXPECT_EQ(Texts{"TST_Leaf b"}, farInstances(a, {CIMName(), "left", ""}));
    EXPECT_EQ(Texts{"TST_Middle c"}, farInstances(a, {CIMName(), "Right", ""}));
    EXPECT_EQ(Texts{"TST_Leaf b"}, farInstances(a, {CIMName(), "", "RIGHT"}));
    EXPECT_EQ(Texts{}, farInstances(a, {CIMName(), "Left", "Left"}));
    EXPECT_EQ(Texts{}, farInstances(a, {CIMName(), "Middle", ""}));
    EXPECT_EQ(Texts{"TST_Leaf b"}, farInstances(a, {CIMName("tst_leaf"), "", ""}));
    EXPECT_EQ((Texts{"TST_Leaf b", "TST_Middle c"}),
              farInstances(a, {CIMName("TST_Base"), "", ""}));
    EXPECT_EQ(Texts{}, farInstances(a, {CIMName("TST_Other"), "", ""}));
}

TEST_F(RepositoryAssociationsTest, RoleNarrowsTheAssociations) {
    EXPECT_EQ(2U, instances(a, {CIMName(), "Left", ""}));
    EXPECT_EQ(1U, instances(a, {CIMName(), "Right", ""}));
    EXPECT_EQ(0U, instances(a, {CIMName(), "Middle", ""}));
}

TEST_F(RepositoryAssociationsTest, FarEndsOfAClassStandInTheOrderOfTheirLinks) {
    Texts all, leaves;
    std::string mof = "instance of TST_Base as $Hub { Id = \"hub\"; };\n";
    for (int number = 0; number < 60; ++number) {
        const char* const targets[] = {"TST_Leaf", "TST_Base", "TST_Middle", "TST_Leaf"};
        const std::string id = std::to_string(number);
        const std::string target = std::string(targets[number % 4]) + ".Id=\\\"" + id + "\\\"";
        mof += number % 5 == 0
                   ? "instance of TST_Link { Left = \"" + target + "\"; Right = $Hub; };\n"
                   : "instance of TST_Link { Left = $Hub; Right = \"" + target + "\"; };\n";
        all.push_back(targets[number % 4] + (" " + id));
        if (all.back().find("TST_Leaf") == 0)
            leaves.push_back(all.back());
    }
    fill(repository, mof);
    const CIMObjectPath hub = pathOf("TST_Base", "hub");
    EXPECT_EQ(all, farInstances(hub));
    EXPECT_EQ(leaves, farInstances(hub, {CIMName("TST_LEAF"), "", ""}));
    EXPECT_EQ(48U, instances(hub, {CIMName(), "Left", ""}));
    EXPECT_EQ(Texts{}, farInstances(hub, {CIMName("TST_Other"), "", ""}));
}

TEST_F(RepositoryAssociationsTest, ClassesAreLinkedByTheirReferences) {
    EXPECT_EQ((Texts{"TST_Base", "TST_Other"}), farClasses("TST_Leaf"));
    EXPECT_EQ(Texts{"TST_Base"}, farClasses("TST_Other"));
    EXPECT_EQ(Texts{"TST_Other"}, farClasses("TST_Base", {CIMName("TST_Other"), "", ""}));
    EXPECT_EQ(Texts{"TST_Other"}, farClasses("TST_Base", {CIMName(), "Source", ""}));
    const RepositoryAssociations associations(repository.view(), nameSpace,
                                              CIMObjectPath("", {}, CIMName("TST_Base")),
                                              {CIMName(), "Left", ""});
    EXPECT_EQ(std::vector{CIMName("TST_Link")},
              associations.associationClasses({CIMName("TST_Link"), CIMName("TST_OtherLink")}));
}

} // namespace
} // namespace embedded::routing::test
