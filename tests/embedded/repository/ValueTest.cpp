// Constants in MOF as values of the declared type.
#include "Fixture.h"
#include "repository/ValueBuilder.h"

#include <Pegasus/Common/Char16.h>

#include <ostream>

namespace embedded::repository {

using namespace Pegasus;

namespace {

/// `declaration` of property P, and the constant that is given for it. `result` is the value as
/// text, or what load() says from the constant on ("column" counts from the constant, 1).
struct ValueCase {
    const char* declaration;
    const char* constant;
    const char* result;
};

std::ostream& operator<<(std::ostream& out, const ValueCase& valueCase) {
    return out << valueCase.declaration << " = " << valueCase.constant;
}

class Values : public RepositoryTest, public testing::WithParamInterface<ValueCase> {
  protected:
    void loadConstant() {
        load(std::string("class A { [Key] string Id; ") + GetParam().declaration + "; };");
        load(std::string("instance of A { Id = \"x\"; P =\n") + GetParam().constant + ";\n};");
    }
};

class ValuesAccepted : public Values {};
class ValuesRefused : public Values {};

TEST_P(ValuesAccepted, AsTheTypeSays) {
    loadConstant();
    EXPECT_EQ(valueOf("A.Id=\"x\"", "P"), GetParam().result);
}

TEST_P(ValuesRefused, WhereTheConstantStands) {
    try {
        loadConstant();
        FAIL() << "accepted";
    } catch (const mof::MofError& error) {
        EXPECT_EQ(error.what(), std::string("test.mof:2:") + GetParam().result);
    }
}

const ValueCase accepted[] = {
    {"boolean P", "true", "TRUE"},
    {"boolean P", "FALSE", "FALSE"},
    {"uint8 P", "255", "255"},
    {"uint8 P", "0xff", "255"},
    {"uint8 P", "0377", "255"},
    {"uint8 P", "11111111b", "255"},
    {"sint8 P", "-128", "-128"},
    {"sint8 P", "127", "127"},
    {"uint16 P", "65535", "65535"},
    {"sint16 P", "-32768", "-32768"},
    {"uint32 P", "4294967295", "4294967295"},
    {"sint32 P", "-2147483648", "-2147483648"},
    {"uint64 P", "18446744073709551615", "18446744073709551615"},
    {"sint64 P", "-9223372036854775808", "-9223372036854775808"},
    {"string P", "\"a \\\"b\\\"\"", "a \"b\""},
    {"string P", "\"a\" \"b\"", "ab"},
    {"string P", "\"\"", ""},
    {"char16 P", "'x'", "x"},
    {"char16 P", "65", "A"},
    {"datetime P", "\"20240229120000.000000+060\"", "20240229120000.000000+060"},
    {"datetime P", "\"00000001020304.000000:000\"", "00000001020304.000000:000"},
    {"uint8 P[]", "{1, 2, 0x3}", "1 2 3 "},
    {"uint8 P[]", "{}", ""},
    {"uint8 P[2]", "{1, 2}", "1 2 "},
    {"string P[]", "{\"x\", \"y\"}", "x y "},
    {"boolean P[]", "{true, false}", "TRUE FALSE "},
    {"sint64 P[]", "{-1}", "-1 "},
    {"datetime P[]", "{\"00000001020304.000000:000\"}", "00000001020304.000000:000 "},
};

INSTANTIATE_TEST_SUITE_P(Are, ValuesAccepted, testing::ValuesIn(accepted));

const ValueCase refused[] = {
    {"uint8 P", "256", "1: property A.P: 256 does not fit into uint8 (0 to 255)"},
    {"uint8 P", "-1", "1: property A.P: -1 does not fit into uint8 (0 to 255)"},
    {"sint8 P", "128", "1: property A.P: 128 does not fit into sint8 (-128 to 127)"},
    {"sint8 P", "-129", "1: property A.P: -129 does not fit into sint8 (-128 to 127)"},
    {"uint16 P", "65536", "1: property A.P: 65536 does not fit into uint16 (0 to 65535)"},
    {"sint16 P", "-32769", "1: property A.P: -32769 does not fit into sint16 (-32768 to 32767)"},
    {"uint32 P", "4294967296",
     "1: property A.P: 4294967296 does not fit into uint32 (0 to 4294967295)"},
    {"sint32 P", "2147483648",
     "1: property A.P: 2147483648 does not fit into sint32 (-2147483648 to 2147483647)"},
    {"uint64 P", "18446744073709551616",
     "1: property A.P: 18446744073709551616 does not fit into uint64 (0 to 18446744073709551615)"},
    {"sint64 P", "9223372036854775808",
     "1: property A.P: 9223372036854775808 does not fit into sint64 (-9223372036854775808 to "
     "9223372036854775807)"},
    {"uint8 P", "\"5\"", "1: property A.P: a uint8 value is expected, not the string \"5\""},
    {"uint8 P", "1.5", "1: property A.P: a uint8 value is expected, not 1.5"},
    {"uint8 P", "true", "1: property A.P: a uint8 value is expected, not TRUE"},
    {"uint8 P", "$A", "1: property A.P: a uint8 value is expected, not the alias $A"},
    {"boolean P", "1", "1: property A.P: a boolean value is expected, not 1"},
    {"string P", "5", "1: property A.P: a string value is expected, not 5"},
    {"string P", "'x'", "1: property A.P: a string value is expected, not the character 'x'"},
    {"char16 P", "\"x\"", "1: property A.P: a char16 value is expected, not the string \"x\""},
    {"char16 P", "65536", "1: property A.P: 65536 does not fit into char16 (0 to 65535)"},
    {"real32 P", "1.0e39",
     "1: property A.P: 1.0e39 does not fit into real32 (its exponent is too large or too small)"},
    {"real64 P", "\"x\"", "1: property A.P: a real64 value is expected, not the string \"x\""},
    {"uint8 P", "{1}", "1: property A.P is no array: one value without braces is expected"},
    {"uint8 P[]", "1", "1: property A.P is an array: its values stand in braces"},
    {"uint8 P[2]", "{1, 2, 3}", "1: property A.P has 2 elements, not 3"},
    {"uint8 P[]", "{1, 300}", "5: property A.P: 300 does not fit into uint8 (0 to 255)"},
    {"uint8 P[]", "{1, NULL}", "5: property A.P: NULL cannot stand in an array"},
};

INSTANTIATE_TEST_SUITE_P(Are, ValuesRefused, testing::ValuesIn(refused));

class ValueTest : public RepositoryTest {
  protected:
    CIMValue constant(const char* type, const char* text) {
        load(std::string("class A { [Key] string Id; ") + type + " P; };" +
             "instance of A { Id = \"x\"; P = " + text + "; };");
        const CIMInstance instance = instanceAt("A.Id=\"x\"");
        return instance.getProperty(instance.findProperty("P")).getValue();
    }
};

TEST_F(ValueTest, RealsKeepTheirPrecision) {
    Real64 value = 0;
    constant("real64", "-1.25e3").get(value);
    EXPECT_EQ(value, -1250.0);
}

TEST_F(ValueTest, RealsMayBeWrittenAsIntegers) {
    Real32 value = 0;
    constant("real32", "+3").get(value);
    EXPECT_EQ(value, 3.0F);
}

TEST_F(ValueTest, NullHasTheDeclaredType) {
    const CIMValue value = constant("datetime", "NULL");
    EXPECT_TRUE(value.isNull());
    EXPECT_EQ(value.getType(), CIMTYPE_DATETIME);
}

TEST_F(ValueTest, ADatetimeThatIsNoneIsRefused) {
    const std::string before = "class A { [Key] string Id;\ndatetime P = ";
    for (const char* text : {"\"2024\"", "\"20241301120000.000000+000\""}) {
        const std::string error = errorOf(before + text + "; };");
        EXPECT_EQ(error.rfind("test.mof:2:14: property A.P: the string ", 0), 0U) << error;
        EXPECT_NE(error.find("is no datetime value: "), std::string::npos) << error;
    }
}

TEST_F(ValueTest, ACharacterBeyondOneCodeUnitIsRefused) {
    const std::string file = "test.mof";
    mof::Literal literal;
    literal.kind = mof::Literal::Kind::Character;
    literal.text = "\U0001F600";
    literal.where.file = &file;
    mof::Value value;
    value.items = {literal};
    try {
        buildValue(value, {"property A.P", CIMTYPE_CHAR16, false, 0});
        FAIL() << "accepted";
    } catch (const mof::MofError& error) {
        EXPECT_STREQ(error.what(),
                     "test.mof:1:1: property A.P: the character '\U0001F600' does not fit into "
                     "char16 (one UTF-16 code unit)");
    }
}

} // namespace
} // namespace embedded::repository
