// Classes without meaning: each is refused at the place of the mistake, and nothing is loaded.
#include "Fixture.h"

namespace embedded::repository {

namespace {

const char* const base = R"(
[Abstract, Description("base"), Version("1.0")]
class Base {
    [Key] string Id;
    uint16 Speed = 5;
    uint8 Codes[];
    uint8 Four[4];
    uint32 Start([Required] string how);
};
class Other { [Key] string Id; };
class OtherBelow : Other {};
[Association] class Link { [Key] Base REF Left; [Key] Other REF Right; };
)";

class ClassErrors : public RepositoryTest, public testing::WithParamInterface<MofCase> {
  protected:
    ClassErrors() { load(base); }
};

TEST_P(ClassErrors, AreRefusedWhereTheyStand) {
    const std::string expected =
        *GetParam().complaint ? std::string("test.mof:") + GetParam().complaint : "";
    EXPECT_EQ(errorOf(GetParam().mof), expected);
    const std::size_t classes =
        repository.view().subClassNames(home, Pegasus::CIMName(), true).size();
    EXPECT_EQ(classes, *GetParam().complaint ? 4U : 5U);
}

const MofCase cases[] = {
    {"SuperclassUnknown", "class A : Nowhere {};",
     "1:7: class A: its superclass Nowhere is not declared in namespace root/test"},
    {"SuperclassDeclaredLater", "class A : B {};\nclass B {};",
     "1:7: class A: its superclass B is not declared in namespace root/test"},
    {"ClassDerivedFromItself", "class A : A {};",
     "1:7: class A: its superclass A is not declared in namespace root/test"},
    {"QualifierUnknown", "[Nonsense] class A {};",
     "1:2: qualifier Nonsense of class A is not declared"},
    {"QualifierDeclaredLater", "[Late] class A {};\nQualifier Late : boolean = false, Scope(any);",
     "1:2: qualifier Late of class A is not declared"},
    {"QualifierOfWrongType", "class A {\n  [MaxLen(\"x\")] string P;\n};",
     "2:11: qualifier MaxLen of property A.P: a uint32 value is expected, not the string \"x\""},
    {"QualifierScalarForArray", "class A {\n  [Values(\"x\")] string P;\n};",
     "2:11: qualifier Values of property A.P is an array: its values stand in braces"},
    {"QualifierTwice", "[Description(\"a\"), description(\"b\")] class A {};",
     "1:20: qualifier description of class A is given twice"},
    {"QualifierOutOfScope", "[Key] class A {};",
     "1:2: qualifier Key of class A is out of its scope (PROPERTY REFERENCE)"},
    {"ClassScopeIsNoAssociationScope", "[Association, ClassOnly] class A {};",
     "1:15: qualifier ClassOnly of class A is out of its scope (CLASS)"},
    {"ClassScopeIsNoAssociationScopeBelowAnAssociation", "[ClassOnly] class A : Link {};",
     "1:2: qualifier ClassOnly of class A is out of its scope (CLASS)"},
    {"AssociationScopeIsNoClassScopeOfAnIndication", "[Indication, ClassOnly] class A {};",
     "1:14: qualifier ClassOnly of class A is out of its scope (CLASS)"},
    {"PropertyScopeIsNoReferenceScope", "[Association] class A {\n  [MaxLen(3)] Base REF R;\n};",
     "2:4: qualifier MaxLen of reference A.R is out of its scope (PROPERTY METHOD PARAMETER)"},
    {"DisableOverrideWithAnotherValue", "class A : Base {\n  [Key(false)] string Id;\n};",
     "2:4: qualifier Key of property A.Id cannot be overridden: a superclass sets it to TRUE with "
     "DISABLEOVERRIDE"},
    {"DisableOverrideWithTheSameValue", "class A : Base {\n  [Key] string Id;\n};", ""},
    {"DisableOverrideByTheUser",
     "[Description(\"fixed\") : DisableOverride] class F {};\n"
     "[Description(\"moved\")] class G : F {};",
     "2:2: qualifier Description of class G cannot be overridden: a superclass sets it to fixed "
     "with DISABLEOVERRIDE"},
    {"PropertyTwice", "class A {\n  string P;\n  uint8 p;\n};",
     "3:9: property p is declared twice"},
    {"MethodTwice", "class A {\n  uint32 M();\n  uint32 m();\n};",
     "3:10: method m is declared twice"},
    {"ParameterTwice", "class A {\n  uint32 M(string x,\n    uint8 X);\n};",
     "3:11: method A.M has two parameters named X"},
    {"PropertyOverriddenWithAnotherType", "class A : Base {\n  uint32 Speed;\n};",
     "2:10: property A.Speed overrides one of type uint16 with type uint32"},
    {"PropertyOverriddenWithAnArray", "class A : Base {\n  uint16 Speed[];\n};",
     "2:10: property A.Speed overrides one of type uint16 with type uint16[]"},
    {"PropertyOverriddenWithAnotherSize", "class A : Base {\n  uint8 Four[3];\n};",
     "2:9: property A.Four overrides one of type uint8[4] with type uint8[3]"},
    {"OverrideOfNothing", "class A : Base {\n  [Override(\"Missing\")] string Missing;\n};",
     "2:4: property A.Missing overrides nothing: no superclass has it"},
    {"MethodOverriddenWithAnotherResult", "class A : Base {\n  string Start();\n};",
     "2:10: method A.Start overrides one that returns uint32 with one that returns string"},
    {"ReferenceOverriddenWithAStranger",
     "[Association] class A : Link {\n  [Key] Other REF Left;\n};",
     "2:19: reference A.Left overrides a reference to Base, and Other is not derived from it"},
    {"ReferenceOverriddenWithASubclass",
     "[Association] class A : Link {\n  [Key] OtherBelow REF Right;\n};", ""},
    {"ReferenceInAPlainClass", "class A {\n  Base REF R;\n};",
     "2:12: reference A.R stands in a class without the qualifier Association"},
    {"AssociationBelowAPlainClass", "[Association] class A : Base {};",
     "1:21: class A is an association and cannot be derived from Base, which is none"},
    {"ReferenceToAnUnknownClass", "[Association] class A {\n  Nowhere REF R;\n};",
     "2:15: reference A.R refers to class Nowhere, which is not declared in namespace root/test"},
    {"ReferenceToItself", "[Association] class A {\n  A REF R;\n};", ""},
    {"ParameterOfAnUnknownClass", "class A {\n  uint32 M(Nowhere REF r);\n};",
     "2:24: parameter A.M.r refers to class Nowhere, which is not declared in namespace root/test"},
    {"KeyThatIsAnArray", "class A {\n  [Key] string Ids[];\n};",
     "2:16: property A.Ids is an array and cannot be a key"},
    {"DefaultOutOfRange", "class A {\n  uint8 P = 256;\n};",
     "2:13: property A.P: 256 does not fit into uint8 (0 to 255)"},
    {"ClassInOtherWords",
     "[Abstract, Description(\"base\"), Version(\"1.0\")]\nclass Base {\n  [Key] string Id;\n};",
     "2:7: class Base is declared already, in other words"},
    {"ClassBelowAnother", "class F : Base {};\nclass F : Other {};",
     "2:7: class F is declared already, in other words"},
    {"ClassThatNoLongerOverrides", "class F : Base { uint8 Four[4]; };\nclass F : Base {};",
     "2:7: class F is declared already, in other words"},
    {"ClassThatOverridesAnother",
     "class F : Base { uint8 Codes[]; };\nclass F : Base { uint8 Four[4]; };",
     "2:7: class F is declared already, in other words"},
    {"ClassInTheSameWords",
     "class F : Base { uint8 Codes[]; };\nclass f : base { uint8 CODES[]; };", ""},
    {"ClassWithAnotherArraySize",
     "class F { [Key] string Id; uint8 P[2]; };\nclass F { [Key] string Id; uint8 P[3]; };",
     "2:7: class F is declared already, in other words"},
};

INSTANTIATE_TEST_SUITE_P(Rule, ClassErrors, testing::ValuesIn(cases), ruleOf);

} // namespace
} // namespace embedded::repository
