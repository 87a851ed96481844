// Instances without meaning: each is refused at the place of the mistake.
#include "Fixture.h"

namespace embedded::repository {

namespace {

const char* const classes = R"(
class Thing { [Key] string Id; uint16 Speed; };
class Gadget : Thing { [Key] uint32 Number; };
class Aside { [Key] string Id; };
[Abstract] class Idea { [Key] string Id; };
[Association] class Link { [Key] Thing REF From; [Key] Thing REF To; };
instance of Thing { Id = "taken"; };
)";

class InstanceErrors : public RepositoryTest, public testing::WithParamInterface<MofCase> {
  protected:
    InstanceErrors() { load(classes); }
};

TEST_P(InstanceErrors, AreRefusedWhereTheyStand) {
    EXPECT_EQ(errorOf(GetParam().mof), std::string("test.mof:") + GetParam().complaint);
    EXPECT_EQ(repository.view().instances(home, "Thing").size(), 1U);
    EXPECT_EQ(repository.view().instances(home, "Link").size(), 0U);
}

const MofCase cases[] = {
    {"ClassUnknown", "instance of Nowhere { Id = \"a\"; };",
     "1:13: instance of Nowhere: the class is not declared in namespace root/test"},
    {"ClassAbstract", "instance of Idea { Id = \"a\"; };",
     "1:13: instance of Idea: the class is abstract and has no instances"},
    {"PropertyUnknown", "instance of Thing { Id = \"a\";\n  Weight = 1; };",
     "2:3: class Thing has no property Weight"},
    {"PropertyTwice", "instance of Thing { Id = \"a\";\n  iD = \"b\"; };",
     "2:3: property iD is given twice"},
    {"KeyMissing", "instance of Thing { Speed = 1; };",
     "1:13: instance of Thing has no value for key Id"},
    {"KeyNull", "instance of Thing { Id = NULL; };",
     "1:26: instance of Thing has no value for key Id"},
    {"KeysTaken", "instance of Thing { Id = \"a\"; };\ninstance of Thing { Id = \"taken\"; };",
     "2:13: instance of Thing: there is one with these keys: Thing.Id=\"taken\""},
    {"KeysTakenWithinTheFile",
     "instance of Gadget { Id = \"a\"; Number = 31; };\n"
     "instance of Gadget { Id = \"a\"; Number = 0x1F; };",
     "2:13: instance of Gadget: there is one with these keys: Gadget.Id=\"a\",Number=31"},
    {"QualifierUnknown", "[Nonsense] instance of Thing { Id = \"a\"; };",
     "1:2: qualifier Nonsense of instance of Thing is not declared"},
    {"QualifierOfAPropertyOutOfScope", "instance of Thing {\n  [Version(\"1\")] Id = \"a\"; };",
     "2:4: qualifier Version of property Id is out of its scope (CLASS ASSOCIATION INDICATION)"},
    {"AliasUnknown", "instance of Link { From = \"Thing.Id=\\\"taken\\\"\";\n  To = $Nobody; };",
     "2:8: property Link.To: no instance has the alias $Nobody"},
    {"AliasTwice",
     "instance of Thing as $A { Id = \"a\"; };\ninstance of Thing as $a { Id = \"b\"; };",
     "2:13: alias $a is declared twice"},
    {"AliasOfAClass",
     "class New as $N { [Key] string Id; };\ninstance of Link { From = $N; To = $N; };",
     "2:27: property Link.From: no instance has the alias $N"},
    {"AliasThatNeedsItself",
     "[Association] class Knot { [Key] Knot REF Of; };\ninstance of Knot as $K { Of = $K; };",
     "2:31: property Knot.Of: the keys of $K depend on themselves"},
    {"AliasOfAnotherClass",
     "instance of Aside as $A { Id = \"a\"; };\ninstance of Link { From = $A; To = $A; };",
     "2:27: property Link.From takes a Thing, and Aside is not derived from it"},
    {"PathOfAnotherClass", "instance of Link {\n  From = \"Aside.Id=\\\"a\\\"\"; };",
     "2:10: property Link.From takes a Thing, and Aside is not derived from it"},
    {"PathOfAnUnknownClass", "instance of Link {\n  From = \"Nowhere.Id=\\\"a\\\"\"; };",
     "2:10: property Link.From points to class Nowhere, which is not declared in namespace "
     "root/test"},
    {"PathWithAStrangeKey", "instance of Link {\n  From = \"Thing.Speed=1\"; };",
     "2:10: property Link.From: Thing.Speed is not a key property"},
    {"PathWithAKeyOfAnotherType", "instance of Link {\n  From = \"Thing.Id=5\"; };",
     "2:10: property Link.From: key Thing.Id takes a string, not 5"},
    {"PathWithoutAllKeys", "instance of Link {\n  From = \"Gadget.Number=5\"; };",
     "2:10: property Link.From: the path has 1 of the 2 keys of Gadget"},
    {"ReferenceThatIsANumber", "instance of Link {\n  From = 5; };",
     "2:10: property Link.From: a reference value is expected, not 5"},
};

INSTANTIATE_TEST_SUITE_P(Rule, InstanceErrors, testing::ValuesIn(cases), ruleOf);

class InstanceErrorTest : public RepositoryTest {};

TEST_F(InstanceErrorTest, AStringThatIsNoPathSaysSo) {
    load(classes);
    const std::string error = errorOf("instance of Link {\n  From = \"no path\"; };");
    EXPECT_EQ(
        error.rfind("test.mof:2:10: property Link.From: \"no path\" is not an object path: ", 0),
        0U)
        << error;
}

} // namespace
} // namespace embedded::repository
