// load() as a whole: everything or nothing, and into which namespaces.
#include "Fixture.h"

namespace embedded::repository {

using namespace Pegasus;

namespace {

class LoadTest : public RepositoryTest {
  protected:
    LoadTest() { load("class Old { [Key] string Id; }; instance of Old { Id = \"1\"; };"); }

    std::vector<std::string> nameSpaces() const {
        std::vector<std::string> names;
        for (const CIMNamespaceName& name : repository.view().nameSpaces())
            names.push_back(text(name.getString()));
        return names;
    }
};

using Strings = std::vector<std::string>;

TEST_F(LoadTest, AFailureLeavesEverythingAsItWas) {
    EXPECT_NE(errorOf(R"(
Qualifier New : boolean = false, Scope(any);
class Young : Old {};
instance of Old { Id = "2"; };
#pragma namespace ("root/new")
Qualifier Key : boolean = false, Scope(property), Flavor(DisableOverride);
class Young { [Key] string Id; };
instance of Young { Id = "1"; };
instance of Young { Id = "1"; };
)"),
              "");
    EXPECT_EQ(nameSpaces(), (Strings{"root/test"}));
    EXPECT_EQ(statusOf([&] { repository.view().getQualifier(home, "New"); }), (Status{6, "New"}));
    EXPECT_FALSE(repository.view().hasClass(home, "Young"));
    EXPECT_EQ(repository.view().instances(home, "Old").size(), 1U);
}

TEST_F(LoadTest, AfterAFailureTheCorrectedFileLoads) {
    const std::string start = "class Young : Old {}; instance of Young { Id = \"1\"; };";
    EXPECT_NE(errorOf(start + "class Broken : Nowhere {};"), "");
    EXPECT_EQ(errorOf(start), "");
    EXPECT_EQ(repository.view().instances(home, "Young").size(), 1U);
}

TEST_F(LoadTest, ALaterFileBuildsOnTheEarlierOnes) {
    load("class Young : Old {};");
    load("instance of Young { Id = \"1\"; };");
    EXPECT_EQ(valueOf("Young.Id=\"1\"", "Id"), "1");
}

TEST_F(LoadTest, ClassesAndAssociationsMayNameEachOther) {
    EXPECT_EQ(errorOf("[Association] class Ahead { [Key] Behind REF A; [Key] Behind REF B; };"
                      "class Behind { [Key] string Id; uint32 Use(Ahead REF link); };"),
              "");
}

TEST_F(LoadTest, AReferenceMayBeNarrowedToAClassThatIsDeclaredLater) {
    EXPECT_EQ(errorOf("[Association] class Wide { [Key] Old REF A; };"
                      "[Association] class Narrow : Wide { [Key] Young REF A; };"
                      "class Young : Old {};"),
              "");
}

TEST_F(LoadTest, NamespacesAreCreatedAsNeededAndKeptInOrder) {
    load("", "root/empty");
    load("#pragma namespace (\"root/second\")\nQualifier Q : boolean = false, Scope(any);");
    EXPECT_EQ(nameSpaces(), (Strings{"root/test", "root/empty", "root/second"}));
    EXPECT_TRUE(repository.view().hasNameSpace("ROOT/Second"));
    EXPECT_FALSE(repository.view().hasNameSpace("root/third"));
}

TEST_F(LoadTest, ANamespaceThatIsKnownStaysAsItIs) {
    repository.createNameSpace("ROOT/Test");
    EXPECT_EQ(nameSpaces(), (Strings{"root/test"}));
    EXPECT_TRUE(repository.view().hasClass(home, "Old"));
}

TEST_F(LoadTest, ANamespaceMustHaveAName) {
    EXPECT_EQ(statusOf([&] { repository.createNameSpace(CIMNamespaceName()); }).code, 4);
}

TEST_F(LoadTest, NamespacesDoNotSeeEachOther) {
    EXPECT_EQ(errorOf("#pragma namespace (\"root/other\")\nclass Young : Old {};"),
              "test.mof:2:7: class Young: its superclass Old is not declared in namespace "
              "root/other");
    EXPECT_EQ(errorOf("#pragma namespace (\"root/other\")\nclass Young { [Key] string Id; };"),
              "test.mof:2:16: qualifier Key of property Young.Id is not declared");
}

TEST_F(LoadTest, AnIllegalNamespaceIsRefused) {
    mof::Specification specification = mof::readText("class Young {};", "test.mof");
    specification.at(0).nameSpace = "root//x";
    try {
        repository.load(specification, home);
        FAIL() << "accepted";
    } catch (const mof::MofError& error) {
        EXPECT_STREQ(error.what(), "test.mof:1:7: \"root//x\" is not the name of a namespace");
    }
}

} // namespace
} // namespace embedded::repository
