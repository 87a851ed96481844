// Instances from MOF: what they are made of, and how they name each other.
#include "Fixture.h"

#include <Pegasus/Common/Array.h>

namespace embedded::repository {

namespace {

using Pegasus::CIMConstProperty;
using Pegasus::CIMInstance;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObjectPath;
using Pegasus::String;
using Pegasus::Uint32;
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
        return repository.enumerateInstances(home, className);
    }
    std::string pathOf(const CIMInstance& instance) const {
        return text(instance.getPath().toString());
    }
};

/// "Name origin given|default value", one per property.
Strings propertiesOf(const CIMInstance& instance) {
    Strings properties;
    for (Uint32 i = 0; i < instance.getPropertyCount(); ++i) {
        const CIMConstProperty property = instance.getProperty(i);
        properties.push_back(
            text(property.getName()) + " " + text(property.getClassOrigin()) +
            (property.getPropagated() ? " default " : " given ") +
            (property.getValue().isNull() ? "NULL" : text(property.getValue().toString())));
    }
    return properties;
}

TEST_F(InstanceTest, HasAllPropertiesInTheOrderOfItsClass) {
    load("instance of gadget { number = 3; ID = \"a\"; Codes = {}; };");
    EXPECT_EQ(propertiesOf(all("Gadget").at(0)),
              (Strings{"Id Thing given a", "Speed Thing default 5", "Text Thing default NULL",
                       "Codes Thing given ", "Number Gadget given 3"}));
}

TEST_F(InstanceTest, NullThatIsWrittenOutweighsTheDefault) {
    load("instance of Thing { Id = \"a\"; Speed = NULL; };");
    EXPECT_EQ(propertiesOf(all("Thing").at(0))[1], "Speed Thing given NULL");
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
    EXPECT_EQ(text(link.getProperty(0).getReferenceClassName()), "Thing");
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
    CIMObjectPath from;
    all("Link").at(0).getProperty(0).getValue().get(from);
    EXPECT_EQ(from.getKeyBindings()[0].getType(), Pegasus::CIMKeyBinding::STRING);
}

TEST_F(InstanceTest, APathMayPointIntoANamespaceThatIsNotServedHere) {
    load(R"(instance of Link { From = "root/far:Far.Id=\"a\""; To = "Thing.Id=\"b\""; };)");
    EXPECT_EQ(all("Link").size(), 1U);
}

TEST_F(InstanceTest, QualifiersStayWithTheClass) {
    load("instance of Thing { Id = \"a\"; };");
    EXPECT_EQ(all("Thing").at(0).getProperty(0).getQualifierCount(), 0U);
}

TEST_F(InstanceTest, HasTheQualifiersThatItIsWrittenWith) {
    load("[Description(\"one\")] instance of Thing { [Description(\"two\")] Id = \"a\"; };");
    const CIMInstance thing = all("Thing").at(0);
    ASSERT_EQ(thing.getQualifierCount(), 1U);
    ASSERT_EQ(thing.getProperty(0).getQualifierCount(), 1U);
    EXPECT_EQ(
        text(Pegasus::CIMConstProperty(thing.getProperty(0)).getQualifier(0).getValue().toString()),
        "two");
}

TEST_F(InstanceTest, IsFoundWhateverHostNamespaceCaseAndOrderSay) {
    load("instance of Gadget { Id = \"a\"; Number = 16; };");
    for (const char* path : {"Gadget.Id=\"a\",Number=16", "gADGET.NUMBER=16,id=\"a\"",
                             "root/elsewhere:Gadget.Id=\"a\",Number=0x10",
                             "//host:5988/root/test:Gadget.Id=\"a\",Number=16"}) {
        EXPECT_EQ(pathOf(instanceAt(path)), "Gadget.Id=\"a\",Number=16") << path;
    }
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
    EXPECT_EQ(statusOf([&] { repository.enumerateInstances("root/none", "Thing"); }),
              (Status{3, "root/none"}));
}

TEST_F(InstanceTest, ChangingWhatWasHandedOutChangesNothingInside) {
    load("instance of Thing { Id = \"a\"; };");
    all("Thing").at(0).getProperty(1).setValue(Pegasus::CIMValue(Pegasus::Uint16(1)));
    instanceAt("Thing.Id=\"a\"").getProperty(1).setValue(Pegasus::CIMValue(Pegasus::Uint16(2)));
    EXPECT_EQ(valueOf("Thing.Id=\"a\"", "Speed"), "5");
}

} // namespace
} // namespace embedded::repository
