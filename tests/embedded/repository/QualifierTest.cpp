// Qualifier declarations.
#include "Fixture.h"

namespace embedded::repository {

using namespace Pegasus;

namespace {

class QualifierTest : public RepositoryTest {
  protected:
    CIMQualifierDecl declared(const char* name) const {
        return repository.view().getQualifier(home, name);
    }
};

TEST_F(QualifierTest, HasTypeDefaultScopeAndFlavor) {
    const CIMQualifierDecl key = declared("key");
    EXPECT_EQ(text(key.getName()), "Key");
    EXPECT_EQ(key.getType(), CIMTYPE_BOOLEAN);
    EXPECT_EQ(text(key.getValue().toString()), "FALSE");
    EXPECT_TRUE(key.getScope().equal(CIMScope::PROPERTY + CIMScope::REFERENCE));
    EXPECT_TRUE(key.getFlavor().equal(CIMFlavor::TOSUBCLASS + CIMFlavor::DISABLEOVERRIDE));
}

TEST_F(QualifierTest, WithoutFlavorsItIsOverridableAndFlowsToSubclasses) {
    EXPECT_TRUE(declared("MaxLen").getFlavor().equal(CIMFlavor::DEFAULTS));
}

TEST_F(QualifierTest, WithoutADefaultItIsNullOfItsType) {
    const CIMQualifierDecl values = declared("Values");
    EXPECT_TRUE(values.isArray());
    EXPECT_TRUE(values.getValue().isNull());
    EXPECT_EQ(values.getType(), CIMTYPE_STRING);
}

TEST_F(QualifierTest, OneWithoutAValueIsTrueIfBooleanAndElseNull) {
    load("class A { [Required, MaxLen] string P; };");
    const CIMProperty property = classNamed("A").getProperty(0);
    EXPECT_EQ(text(CIMConstProperty(property).getQualifier(0).getValue().toString()), "TRUE");
    EXPECT_TRUE(CIMConstProperty(property).getQualifier(1).getValue().isNull());
}

TEST_F(QualifierTest, AllOfANamespaceComeInTheOrderOfDeclaration) {
    const auto all = repository.view().enumerateQualifiers(home);
    ASSERT_EQ(all.size(), 12U);
    EXPECT_EQ(text(all[0].getName()), "Abstract");
    EXPECT_EQ(text(all[11].getName()), "DisplayName");
}

TEST_F(QualifierTest, UnknownNamesHaveTheStatusOfTheirOperation) {
    EXPECT_EQ(statusOf([&] { declared("NoSuch"); }), (Status{6, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { repository.view().getQualifier("root/none", "Key"); }),
              (Status{3, "root/none"}));
    EXPECT_EQ(statusOf([&] { repository.view().enumerateQualifiers("root/none"); }),
              (Status{3, "root/none"}));
}

TEST_F(QualifierTest, MayBeDeclaredAgainInTheSameWords) {
    EXPECT_EQ(errorOf("Qualifier MAXLEN : uint32 = null, Scope(parameter, property, method);"), "");
}

class QualifierRedeclared : public RepositoryTest, public testing::WithParamInterface<MofCase> {};

TEST_P(QualifierRedeclared, InOtherWordsIsRefused) {
    EXPECT_EQ(errorOf(GetParam().mof), std::string("test.mof:") + GetParam().complaint);
}

const char* const complaint = "1:11: qualifier MaxLen is declared already, in other words";

const MofCase cases[] = {
    {"Type", "Qualifier MaxLen : uint64 = null, Scope(property, method, parameter);", complaint},
    {"Array", "Qualifier MaxLen : uint32[], Scope(property, method, parameter);", complaint},
    {"Value", "Qualifier MaxLen : uint32 = 5, Scope(property, method, parameter);", complaint},
    {"Scope", "Qualifier MaxLen : uint32 = null, Scope(property, method);", complaint},
    {"Flavor",
     "Qualifier MaxLen : uint32 = null, Scope(property, method, parameter), Flavor(Restricted);",
     complaint},
    {"DefaultOfAnotherType", "Qualifier New : uint32 = \"x\", Scope(any);",
     "1:26: qualifier New: a uint32 value is expected, not the string \"x\""},
};

INSTANTIATE_TEST_SUITE_P(Differs, QualifierRedeclared, testing::ValuesIn(cases), ruleOf);

} // namespace
} // namespace embedded::repository
