// Instances from MOF: what they are made of, and how they name each other.
#include "Fixture.h"

#include <Pegasus/Common/Array.h>

namespace embedded::repository {

using namespace Pegasus;

namespace {

using Strings = std::vector<std::string>;

const char* const classes = R"(
class Thing { [Key] string Id; uint16 Speed = 5; string Text; uint8 Codes[] = {1, 2}; };
class Gadget : Thing { [Key] uint32 Number; };
[Association] class Link { [Key] Thing REF From; [Key] Thing REF To; string Note; };
[Association] class Chain { [Key] Link REF Of; Thing REF Next; };
)";

class InstanceTest : public RepositoryTest {
  protected:
    InstanceTest() { load(classes); }

    std::vector<CIMInstance> all(const char* className) const {
        std::vector<CIMInstance> instances;
        const InstanceList list = repository.view().instances(home, className);
        for (std::size_t i = 0; i < list.size(); ++i)
            instances.push_back(list[i].instance());
        return instances;
    }
    std::string pathOf(const CIMInstance& instance) const {
        return text(instance.getPath().toString());
    }
};

TEST_F(InstanceTest, HasWhatComesFromItsClassInThatsOrderThenWhatIsGivenInTheOrderGiven) {
    load("instance of gadget { number = 3; ID = \"a\"; Codes = {}; };");
    EXPECT_EQ(propertyTexts(all("Gadget").at(0)),
              (Strings{"Speed Thing default 5", "Text Thing default NULL", "Number Gadget given 3",
                       "Id Thing given a", "Codes Thing given "}));
}

TEST_F(InstanceTest, ThatGivesNothingHasThePropertiesOfItsClassInThatsOrder) {
    load("class D { uint8 First = 1; [Key] string Id = \"only\"; string Last; };"
         "class E : D { uint8 First; };"
         "instance of D {}; instance of E {};");
    EXPECT_EQ(propertyTexts(all("D").at(0)),
              (Strings{"First D default 1", "Id D default only", "Last D default NULL"}));
    EXPECT_EQ(propertyTexts(all("E").at(0)),
              (Strings{"Id D default only", "Last D default NULL", "First D default NULL"}));
}

TEST_F(InstanceTest, NullThatIsWrittenOutweighsTheDefault) {
    load("instance of Thing { Speed = NULL; Id = \"a\"; };");
    EXPECT_EQ(propertyTexts(all("Thing").at(0))[2], "Speed Thing given NULL");
}

TEST_F(InstanceTest, PathHasClassAndKeysOnly) {
    load("instance of gadget { Id = \"a\"; number = 0x10; };");
    EXPECT_EQ(pathOf(all("Gadget").at(0)), "Gadget.Id=\"a\",Number=16");
}

TEST_F(InstanceTest, AKeyMayComeFromTheClass) {
    load("class D { [Key] string Id = \"only\"; }; instance of D {};");
    EXPECT_EQ(pathOf(all("D").at(0)), "D.Id=\"only\"");
}

TEST_F(InstanceTest, BelongsToItsOwnClassOnly) {
    load("instance of Gadget { Id = \"a\"; Number = 1; };");
    EXPECT_TRUE(all("Thing").empty());
    EXPECT_EQ(all("Gadget").size(), 1U);
}

TEST_F(InstanceTest, ComeInTheOrderOfDeclaration) {
    load("instance of Thing { Id = \"b\"; }; instance of Thing { Id = \"a\"; };");
    EXPECT_EQ(pathOf(all("Thing").at(0)), "Thing.Id=\"b\"");
    EXPECT_EQ(pathOf(all("Thing").at(1)), "Thing.Id=\"a\"");
}

TEST_F(InstanceTest, AnAliasStandsForThePath) {
    load(R"(
instance of Thing as $T { Id = "a"; };
instance of Gadget as $G { Id = "g"; Number = 1; };
instance of Link { From = $T; To = $g; };
)");
    const CIMInstance link = all("Link").at(0);
    CIMObjectPath from;
    link.getProperty(link.findProperty("From")).getValue().get(from);
    EXPECT_EQ(text(from.toString()), "Thing.Id=\"a\"");
    EXPECT_EQ(pathOf(link), R"(Link.From="Thing.Id=\"a\"",To="Gadget.Id=\"g\",Number=1")");
    const CIMConstProperty reference = link.getProperty(link.findProperty("From"));
    EXPECT_EQ(text(reference.getReferenceClassName()), "Thing");
}

TEST_F(InstanceTest, AnAliasMayBeUsedBeforeItIsDeclared) {
    load(R"(
instance of Chain { Of = $L; Next = $A; };
instance of Link as $L { From = $A; To = $A; };
instance of Thing as $A { Id = "a"; };
)");
    EXPECT_EQ(all("Chain").size(), 1U);
    EXPECT_EQ(valueOf(pathOf(all("Chain").at(0)).c_str(), "Next"), "Thing.Id=\"a\"");
}

TEST_F(InstanceTest, AliasesMayGoInCirclesOutsideTheKeys) {
    load(R"(
[Association] class Ring { [Key] string Id; Ring REF Next; };
instance of Ring as $One { Id = "1"; Next = $Two; };
instance of Ring as $Two { Id = "2"; Next = $One; };
)");
    EXPECT_EQ(valueOf("Ring.Id=\"1\"", "Next"), "Ring.Id=\"2\"");
    EXPECT_EQ(valueOf("Ring.Id=\"2\"", "Next"), "Ring.Id=\"1\"");
}

TEST_F(InstanceTest, AnAliasFromAnotherNamespaceBringsItsNamespace) {
    repository.load(mof::readText(R"(
#pragma namespace ("root/other")
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);
class Thing { [Key] string Id; };
instance of Thing as $There { Id = "x"; };
#pragma namespace ("root/test")
instance of Thing as $Here { Id = "x"; };
instance of Link { From = $Here; To = $There; };
)",
                                  "test.mof"),
                    home);
    EXPECT_EQ(pathOf(all("Link").at(0)),
              R"(Link.From="Thing.Id=\"x\"",To="root/other:Thing.Id=\"x\"")");
}

TEST_F(InstanceTest, AReferenceMayBeWrittenAsAPath) {
    load(R"(instance of Link { From = "thing.ID=\"a\""; To = "Gadget.Number=1,Id=\"g\""; };)");
    EXPECT_EQ(pathOf(all("Link").at(0)),
              R"(Link.From="Thing.Id=\"a\"",To="Gadget.Id=\"g\",Number=1")");
}

TEST_F(InstanceTest, AStringKeyThatLooksLikeAPathStaysAString) {
    load(R"(instance of Link { From = "Thing.Id=\"X.y=1\""; To = "Thing.Id=\"b\""; };)");
    const CIMInstance link = all("Link").at(0);
    CIMObjectPath from;
    link.getProperty(link.findProperty("From")).getValue().get(from);
    EXPECT_EQ(from.getKeyBindings()[0].getType(), CIMKeyBinding::STRING);
}

TEST_F(InstanceTest, APathMayPointIntoANamespaceThatIsNotServedHere) {
    load(R"(instance of Link { From = "root/far:Far.Id=\"a\""; To = "Thing.Id=\"b\""; };)");
    EXPECT_EQ(all("Link").size(), 1U);
}

TEST_F(InstanceTest, QualifiersOfPropertiesStayWithTheClass) {
    load("instance of Gadget { Id = \"a\"; Number = 1; };");
    const CIMInstance gadget = all("Gadget").at(0);
    for (Uint32 i = 0; i < gadget.getPropertyCount(); ++i)
        EXPECT_EQ(gadget.getProperty(i).getQualifierCount(), 0U) << i;
}

TEST_F(InstanceTest, HasTheQualifiersThatItsClassHandsDownMarkedAndTheLastFirst) {
    load("[Description(\"d\"), Version(\"1\"), ClassOnly] class D : Thing {};"
         "instance of D { Id = \"a\"; };");
    EXPECT_EQ(qualifierTexts(all("D").at(0)),
              (Strings{"ClassOnly=TRUE propagated", "Description=d propagated"}));
}

TEST_F(InstanceTest, HasTheQualifiersThatItIsWrittenWithBehindThoseHandedDown) {
    load("[Description(\"d\"), ClassOnly] class D : Thing {};"
         "[Description(\"one\"), DisplayName(\"me\")]"
         "instance of D { [Description(\"two\")] Id = \"a\"; };");
    const CIMInstance thing = all("D").at(0);
    EXPECT_EQ(qualifierTexts(thing),
              (Strings{"ClassOnly=TRUE propagated", "Description=one own", "DisplayName=me own"}));
    EXPECT_EQ(qualifierTexts(thing.getProperty(thing.findProperty("Id"))),
              (Strings{"Description=two own"}));
}

TEST_F(InstanceTest, IsFoundWhateverHostNamespaceCaseAndOrderSay) {
    load("instance of Gadget { Id = \"a\"; Number = 16; };");
    for (const char* path : {"Gadget.Id=\"a\",Number=16", "gADGET.NUMBER=16,id=\"a\"",
                             "root/elsewhere:Gadget.Id=\"a\",Number=0x10",
                             "//host:5988/root/test:Gadget.Id=\"a\",Number=16"})
        EXPECT_EQ(pathOf(instanceAt(path)), "Gadget.Id=\"a\",Number=16") << path;
}

TEST_F(InstanceTest, AnExactReferenceKeyGoesBeforeOneThatLeavesItsNamespaceOpen) {
    load(R"(
instance of Link { From = "Thing.Id=\"a\""; To = "Thing.Id=\"a\""; Note = "here"; };
instance of Link { From = "root/far:Thing.Id=\"a\""; To = "Thing.Id=\"a\""; Note = "far"; };
)");
    const char* far = R"(Link.From="root/far:Thing.Id=\"a\"",To="Thing.Id=\"a\"")";
    const char* here = R"(Link.From="Thing.Id=\"a\"",To="Thing.Id=\"a\"")";
    const char* elsewhere = R"(Link.From="root/elsewhere:Thing.Id=\"a\"",To="Thing.Id=\"a\"")";
    EXPECT_EQ(valueOf(far, "Note"), "far");
    EXPECT_EQ(valueOf(here, "Note"), "here");
    EXPECT_EQ(valueOf(elsewhere, "Note"), "here");
}

TEST_F(InstanceTest, ThatIsMissingIsNamedWithoutHostAndNamespace) {
    const auto get = [&](const char* path) { return statusOf([&] { instanceAt(path); }); };
    EXPECT_EQ(get("//host/root/test:Thing.Id=\"zz\""), (Status{6, "Thing.Id=\"zz\""}));
    EXPECT_EQ(get("Thing.Id=5"), (Status{6, "Thing.Id=5"}));
    EXPECT_EQ(get("NoSuch.Id=\"a\""), (Status{5, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { all("NoSuch"); }), (Status{5, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { repository.view().instances("root/none", "Thing"); }),
              (Status{3, "root/none"}));
}

TEST_F(InstanceTest, ChangingWhatWasHandedOutChangesNothingInside) {
    load("instance of Thing { Id = \"a\"; };");
    const auto change = [](CIMInstance mine, Uint16 speed) {
        mine.getProperty(mine.findProperty("Speed")).setValue(CIMValue(speed));
    };
    change(all("Thing").at(0), 1);
    change(instanceAt("Thing.Id=\"a\""), 2);
    EXPECT_EQ(valueOf("Thing.Id=\"a\"", "Speed"), "5");
}

} // namespace
} // namespace embedded::repository
