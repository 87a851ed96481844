// Instances in requests: CreateInstance and ModifyInstance.
#include "Requests.h"

#include "cimxml/Objects.h"

#include <gtest/gtest.h>

namespace embedded::cimxml::test {
namespace {

using namespace Pegasus;

std::string instance(const std::string& members) {
    return parameter("NewInstance", "<INSTANCE CLASSNAME=\"X\">\n" + members + "</INSTANCE>");
}

// The instance that arrives when `members` are in the request.
CIMInstance created(const std::string& members) {
    FakeOperations operations;
    operations.createdPath = CIMObjectPath("X");
    const std::string answer = content(operations, "CreateInstance", instance(members));
    EXPECT_EQ(answer.find("<ERROR"), std::string::npos) << answer;
    return operations.lastInstance;
}

CIMConstProperty createdProperty(const std::string& member) {
    const CIMInstance instance = created(member);
    EXPECT_EQ(instance.getPropertyCount(), 1U);
    return instance.getProperty(0);
}

std::string failure(const std::string& members) {
    return recorded("CreateInstance", instance(members));
}

std::string invalid(const std::string& message) {
    return "no call, but " + errorContent(4, "CIM_ERR_INVALID_PARAMETER: " + message);
}

TEST(NewInstance, HasItsClassNameForPath) {
    const CIMInstance instance = created("");
    EXPECT_TRUE(instance.getClassName() == CIMName("X"));
    EXPECT_TRUE(instance.getPath() == CIMObjectPath("X"));
    EXPECT_EQ(instance.getPropertyCount(), 0U);
}

TEST(NewInstance, KeepsTheOrderOfItsProperties) {
    const CIMInstance instance =
        created("<PROPERTY.REFERENCE NAME=\"c\"/>\n"
                "<PROPERTY NAME=\"a\" TYPE=\"string\"><VALUE>1</VALUE></PROPERTY>\n"
                "<PROPERTY.ARRAY NAME=\"b\" TYPE=\"uint8\"/>");
    ASSERT_EQ(instance.getPropertyCount(), 3U);
    EXPECT_TRUE(instance.getProperty(0).getName() == CIMName("c"));
    EXPECT_TRUE(instance.getProperty(1).getName() == CIMName("a"));
    EXPECT_TRUE(instance.getProperty(2).getName() == CIMName("b"));
}

TEST(NewInstance, HasPropertiesOfEveryType) {
    const std::pair<const char*, CIMValue> types[] = {
        {"boolean", CIMValue(Boolean(true))},
        {"uint8", CIMValue(Uint8(1))},
        {"sint8", CIMValue(Sint8(1))},
        {"uint16", CIMValue(Uint16(1))},
        {"sint16", CIMValue(Sint16(1))},
        {"uint32", CIMValue(Uint32(1))},
        {"sint32", CIMValue(Sint32(1))},
        {"uint64", CIMValue(Uint64(1))},
        {"sint64", CIMValue(Sint64(1))},
        {"real32", CIMValue(Real32(1))},
        {"real64", CIMValue(Real64(1))},
        {"char16", CIMValue(Char16('1'))},
        {"string", CIMValue(String("1"))},
        {"datetime", CIMValue(CIMDateTime("20200102030405.123456+060"))},
    };
    for (const auto& [type, value] : types) {
        const std::string name = type;
        const std::string text = name == "boolean"    ? "TRUE"
                                 : name == "datetime" ? "20200102030405.123456+060"
                                                      : "1";
        const std::string head = " NAME=\"p\" TYPE=\"" + name + "\"";
        EXPECT_TRUE(createdProperty("<PROPERTY" + head + "><VALUE>" + text + "</VALUE></PROPERTY>")
                        .getValue() == value)
            << name;
        const CIMConstProperty null = createdProperty("<PROPERTY" + head + "/>");
        EXPECT_TRUE(null.getValue().isNull());
        EXPECT_EQ(null.getType(), value.getType());
        const CIMConstProperty array =
            createdProperty("<PROPERTY.ARRAY" + head + "><VALUE.ARRAY><VALUE>" + text +
                            "</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>");
        EXPECT_TRUE(array.isArray());
        EXPECT_EQ(array.getValue().getArraySize(), 1U);
        EXPECT_EQ(array.getType(), value.getType());
        const CIMConstProperty nullArray = createdProperty("<PROPERTY.ARRAY" + head + "/>");
        EXPECT_TRUE(nullArray.getValue().isNull() && nullArray.isArray());
    }
}

TEST(NewInstance, HasReferences) {
    const CIMConstProperty null = createdProperty("<PROPERTY.REFERENCE NAME=\"r\"/>");
    EXPECT_TRUE(null.getValue().isNull());
    EXPECT_EQ(null.getType(), CIMTYPE_REFERENCE);

    const CIMConstProperty property =
        createdProperty("<PROPERTY.REFERENCE NAME=\"r\" REFERENCECLASS=\"X\" CLASSORIGIN=\"O\" "
                        "PROPAGATED=\"true\"><VALUE.REFERENCE>" +
                        instanceName() + "</VALUE.REFERENCE></PROPERTY.REFERENCE>");
    EXPECT_TRUE(property.getValue() == CIMValue(CIMObjectPath("X.a=\"1\"")));
    EXPECT_TRUE(property.getReferenceClassName() == CIMName("X"));
    EXPECT_TRUE(property.getClassOrigin() == CIMName("O"));
    EXPECT_TRUE(property.getPropagated());
}

TEST(NewInstance, KeepsEmbeddedObjectsAsStrings) {
    const CIMConstProperty property =
        createdProperty("<PROPERTY NAME=\"e\" TYPE=\"string\" EmbeddedObject=\"instance\">"
                        "<VALUE>&lt;INSTANCE CLASSNAME=\"E\"/&gt;</VALUE></PROPERTY>");
    EXPECT_TRUE(property.getValue() == CIMValue(String("<INSTANCE CLASSNAME=\"E\"/>")));
}

TEST(NewInstance, HasQualifiersWithTheirFlavors) {
    const CIMInstance instance =
        created("<QUALIFIER NAME=\"D\" TYPE=\"string\"><VALUE>d</VALUE></QUALIFIER>"
                "<QUALIFIER NAME=\"N\" TYPE=\"string\" OVERRIDABLE=\"false\" TOSUBCLASS=\"false\" "
                "TOINSTANCE=\"true\" TRANSLATABLE=\"true\" PROPAGATED=\"true\">"
                "<VALUE.ARRAY><VALUE>n</VALUE></VALUE.ARRAY></QUALIFIER>"
                "<PROPERTY NAME=\"p\" TYPE=\"string\">"
                "<QUALIFIER NAME=\"K\" TYPE=\"boolean\"/></PROPERTY>");
    ASSERT_EQ(instance.getQualifierCount(), 2U);
    EXPECT_TRUE(instance.getQualifier(0).getFlavor().equal(CIMFlavor::DEFAULTS));
    EXPECT_TRUE(instance.getQualifier(0).getValue() == CIMValue(String("d")));
    EXPECT_EQ(instance.getQualifier(0).getPropagated(), 0U);
    EXPECT_TRUE(instance.getQualifier(1).getFlavor().equal(CIMFlavor::TOINSTANCE +
                                                           CIMFlavor::TRANSLATABLE));
    EXPECT_TRUE(instance.getQualifier(1).getValue().isArray());
    EXPECT_NE(instance.getQualifier(1).getPropagated(), 0U);
    const CIMConstProperty property = instance.getProperty(0);
    ASSERT_EQ(property.getQualifierCount(), 1U);
    EXPECT_TRUE(property.getQualifier(0).getValue().isNull());
}

TEST(NewInstance, WithAnIllegalValueIsInvalid) {
    EXPECT_EQ(failure("<PROPERTY NAME=\"p\" TYPE=\"uint8\"><VALUE>256</VALUE></PROPERTY>"),
              invalid("Invalid uint8 value &quot;256&quot;."));
}

TEST(NewInstance, WithAPropertyTwiceIsInvalid) {
    EXPECT_EQ(failure("<PROPERTY NAME=\"p\" TYPE=\"uint8\"/><PROPERTY NAME=\"P\" TYPE=\"uint8\"/>"),
              invalid("already exists: property &quot;P&quot;"));
}

TEST(NewInstance, WithAnArrayOfAnotherSizeThanDeclaredIsInvalid) {
    EXPECT_EQ(failure("<PROPERTY.ARRAY NAME=\"p\" TYPE=\"uint8\" ARRAYSIZE=\"2\"><VALUE.ARRAY>"
                      "<VALUE>1</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>")
                  .find("no call, but <ERROR CODE=\"4\""),
              0U);
}

TEST(NewInstance, WithIllegalAttributesMakesTheDocumentInvalid) {
    for (const char* members :
         {"<PROPERTY NAME=\"1\" TYPE=\"uint8\"/>", "<PROPERTY NAME=\"p\"/>",
          "<PROPERTY NAME=\"p\" TYPE=\"int\"/>", "<PROPERTY NAME=\"p\" TYPE=\"reference\"/>",
          "<PROPERTY NAME=\"p\" TYPE=\"uint8\" PROPAGATED=\"yes\"/>",
          "<PROPERTY NAME=\"p\" TYPE=\"uint8\" CLASSORIGIN=\"\"/>",
          "<PROPERTY.ARRAY NAME=\"p\" TYPE=\"uint8\" ARRAYSIZE=\"many\"/>",
          "<PROPERTY.ARRAY NAME=\"p\" TYPE=\"uint8\" ARRAYSIZE=\"2x\"/>",
          "<PROPERTY.ARRAY NAME=\"p\" TYPE=\"uint8\" ARRAYSIZE=\"4294967296\"/>",
          "<PROPERTY.ARRAY NAME=\"p\" TYPE=\"uint8\"><VALUE>1</VALUE></PROPERTY.ARRAY>",
          "<PROPERTY NAME=\"p\" TYPE=\"uint8\"><VALUE>1</VALUE><VALUE>1</VALUE></PROPERTY>",
          "<PROPERTY NAME=\"p\" TYPE=\"uint8\"/><QUALIFIER NAME=\"q\" TYPE=\"string\"/>"})
        EXPECT_EQ(
            rejection(request("CreateInstance", instance(members)), headersFor("CreateInstance")),
            "400 request-not-valid")
            << members;
}

TEST(ModifiedInstance, HasThePathThatItIsNamedBy) {
    FakeOperations operations;
    content(operations, "ModifyInstance",
            parameter("ModifiedInstance",
                      "<VALUE.NAMEDINSTANCE>" + instanceName() +
                          "<INSTANCE CLASSNAME=\"x\"><PROPERTY NAME=\"p\" TYPE=\"string\"/>"
                          "</INSTANCE></VALUE.NAMEDINSTANCE>"));
    EXPECT_TRUE(operations.lastInstance.getPath() == CIMObjectPath("X.a=\"1\""));
    EXPECT_EQ(operations.lastInstance.getPropertyCount(), 1U);
}

TEST(ModifiedInstance, OfAnotherClassThanItsPathIsInvalid) {
    const std::string answer = recorded(
        "ModifyInstance", parameter("ModifiedInstance", "<VALUE.NAMEDINSTANCE>" + instanceName() +
                                                            "<INSTANCE CLASSNAME=\"Y\"/>"
                                                            "</VALUE.NAMEDINSTANCE>"));
    EXPECT_EQ(answer.find("no call, but <ERROR CODE=\"4\""), 0U) << answer;
}

} // namespace
} // namespace embedded::cimxml::test
