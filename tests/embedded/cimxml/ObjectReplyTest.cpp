// Instances in replies: layout, property lists, and what the flags leave out.
#include "Requests.h"

#include "embedding/XmlWriter.h"

#include <gtest/gtest.h>

namespace embedded::cimxml::test {
namespace {

using namespace Pegasus;
using namespace Pegasus::embedding;

std::string written(const CIMProperty& property) {
    std::string out;
    appendProperty(out, property, true, true);
    return out;
}

CIMQualifier qualifier(const char* name, const CIMFlavor& flavor, bool propagated = false) {
    return CIMQualifier(CIMName(name), CIMValue(Boolean(true)), flavor, propagated);
}

std::string written(const CIMQualifier& value) {
    std::string out;
    appendQualifier(out, value);
    return out;
}

TEST(WrittenProperty, HasTwoBlanksBeforeItsType) {
    EXPECT_EQ(written(CIMProperty(CIMName("p"), CIMValue(Uint16(5)))),
              "<PROPERTY NAME=\"p\"  TYPE=\"uint16\">\n<VALUE>5</VALUE>\n</PROPERTY>\n");
    EXPECT_EQ(written(CIMProperty(CIMName("p"), CIMValue(CIMTYPE_UINT16, false))),
              "<PROPERTY NAME=\"p\"  TYPE=\"uint16\">\n</PROPERTY>\n");
}

TEST(WrittenProperty, ThatIsAnArrayTellsEmptyFromNull) {
    EXPECT_EQ(written(CIMProperty(CIMName("p"), CIMValue(Array<String>()))),
              "<PROPERTY.ARRAY NAME=\"p\"  TYPE=\"string\">\n<VALUE.ARRAY>\n</VALUE.ARRAY>\n"
              "</PROPERTY.ARRAY>\n");
    EXPECT_EQ(written(CIMProperty(CIMName("p"), CIMValue(CIMTYPE_STRING, true))),
              "<PROPERTY.ARRAY NAME=\"p\"  TYPE=\"string\">\n</PROPERTY.ARRAY>\n");
    Array<String> two;
    two.append("x");
    two.append("y");
    EXPECT_EQ(written(CIMProperty(CIMName("p"), CIMValue(two), 2)),
              "<PROPERTY.ARRAY NAME=\"p\"  TYPE=\"string\" ARRAYSIZE=\"2\">\n<VALUE.ARRAY>\n"
              "<VALUE>x</VALUE>\n<VALUE>y</VALUE>\n</VALUE.ARRAY>\n</PROPERTY.ARRAY>\n");
}

TEST(WrittenProperty, ThatIsAReferenceHasNoType) {
    EXPECT_EQ(written(CIMProperty(CIMName("r"), CIMValue(CIMTYPE_REFERENCE, false))),
              "<PROPERTY.REFERENCE NAME=\"r\" >\n</PROPERTY.REFERENCE>\n");
    EXPECT_EQ(written(CIMProperty(CIMName("r"), CIMValue(CIMObjectPath("X")), 0, CIMName("X"),
                                  CIMName("O"), true)),
              "<PROPERTY.REFERENCE NAME=\"r\"  REFERENCECLASS=\"X\" CLASSORIGIN=\"O\" "
              "PROPAGATED=\"true\">\n<VALUE.REFERENCE>\n<INSTANCENAME CLASSNAME=\"X\">\n"
              "</INSTANCENAME>\n</VALUE.REFERENCE>\n</PROPERTY.REFERENCE>\n");
}

TEST(WrittenProperty, HasItsOriginBeforeItsType) {
    EXPECT_EQ(written(CIMProperty(CIMName("p"), CIMValue(CIMTYPE_STRING, false), 0, CIMName(),
                                  CIMName("O"), true)),
              "<PROPERTY NAME=\"p\"  CLASSORIGIN=\"O\" PROPAGATED=\"true\" TYPE=\"string\">\n"
              "</PROPERTY>\n");
}

TEST(WrittenProperty, ThatIsAnObjectIsAString) {
    EXPECT_EQ(written(CIMProperty(CIMName("e"), CIMValue(CIMTYPE_INSTANCE, false))),
              "<PROPERTY NAME=\"e\"  TYPE=\"string\" EmbeddedObject=\"instance\" "
              "EMBEDDEDOBJECT=\"instance\">\n</PROPERTY>\n");
    EXPECT_EQ(written(CIMProperty(CIMName("e"), CIMValue(CIMObject(CIMInstance(CIMName("E")))))),
              "<PROPERTY NAME=\"e\"  TYPE=\"string\" EmbeddedObject=\"object\" "
              "EMBEDDEDOBJECT=\"object\">\n<VALUE>&lt;INSTANCE CLASSNAME=&quot;E&quot; "
              "&gt;&#10;&lt;/INSTANCE&gt;&#10;</VALUE>\n</PROPERTY>\n");
}

TEST(WrittenQualifier, NamesTheFlavorsThatAreNotTheDefault) {
    const std::string rest = ">\n<VALUE>TRUE</VALUE>\n</QUALIFIER>\n";
    const std::string head = "<QUALIFIER NAME=\"Q\" TYPE=\"boolean\"";
    EXPECT_EQ(written(qualifier("Q", CIMFlavor::DEFAULTS)), head + rest);
    EXPECT_EQ(written(qualifier("Q", CIMFlavor::NONE)),
              head + " OVERRIDABLE=\"false\" TOSUBCLASS=\"false\"" + rest);
    EXPECT_EQ(written(qualifier("Q", CIMFlavor::TOSUBCLASS)),
              head + " OVERRIDABLE=\"false\"" + rest);
    EXPECT_EQ(
        written(qualifier(
            "Q", CIMFlavor::DEFAULTS + CIMFlavor::TOINSTANCE + CIMFlavor::TRANSLATABLE, true)),
        head + " PROPAGATED=\"true\" TRANSLATABLE=\"true\"" + rest);
}

// An instance with everything that a flag can leave out.
CIMInstance fullInstance() {
    CIMInstance instance(CIMName("X"));
    instance.addQualifier(qualifier("Q", CIMFlavor::DEFAULTS));
    CIMProperty first(CIMName("first"), CIMValue(Uint8(1)), 0, CIMName(), CIMName("O"), true);
    first.addQualifier(qualifier("K", CIMFlavor::DEFAULTS));
    instance.addProperty(first);
    instance.addProperty(CIMProperty(CIMName("second"), CIMValue(Uint8(2))));
    instance.addProperty(CIMProperty(CIMName("third"), CIMValue(Uint8(3))));
    return instance;
}

const std::string second = "<PROPERTY NAME=\"second\"  TYPE=\"uint8\">\n<VALUE>2</VALUE>\n"
                           "</PROPERTY>\n";
const std::string third = "<PROPERTY NAME=\"third\"  TYPE=\"uint8\">\n<VALUE>3</VALUE>\n"
                          "</PROPERTY>\n";

std::string qualifierElement(const std::string& name) {
    return "<QUALIFIER NAME=\"" + name +
           "\" TYPE=\"boolean\">\n<VALUE>TRUE</VALUE>\n</QUALIFIER>\n";
}

std::string firstElement(const std::string& origin, const std::string& qualifiers) {
    return "<PROPERTY NAME=\"first\" " + origin + " PROPAGATED=\"true\" TYPE=\"uint8\">\n" +
           qualifiers + "<VALUE>1</VALUE>\n</PROPERTY>\n";
}

std::string instanceElement(const std::string& members) {
    return "<INSTANCE CLASSNAME=\"X\" >\n" + members + "</INSTANCE>\n";
}

// What GetInstance returns of fullInstance().
std::string got(const std::string& parameters) {
    FakeOperations operations;
    operations.instance = fullInstance();
    return returned(operations, "GetInstance",
                    parameter("InstanceName", instanceName()) + parameters);
}

const std::string withQualifiers = parameter("IncludeQualifiers", "<VALUE>TRUE</VALUE>");
const std::string withOrigin = parameter("IncludeClassOrigin", "<VALUE>TRUE</VALUE>");

std::string listed(const std::string& names) {
    return parameter("PropertyList", "<VALUE.ARRAY>" + names + "</VALUE.ARRAY>");
}

TEST(WrittenInstance, LosesQualifiersAndOriginUnlessAskedFor) {
    EXPECT_EQ(got(""), instanceElement(firstElement("", "") + second + third));
    EXPECT_EQ(got(withQualifiers),
              instanceElement(qualifierElement("Q") + firstElement("", qualifierElement("K")) +
                              second + third));
    EXPECT_EQ(got(withOrigin),
              instanceElement(firstElement(" CLASSORIGIN=\"O\"", "") + second + third));
}

TEST(WrittenInstance, HasTheListedPropertiesInTheOrderOfTheList) {
    EXPECT_EQ(got(listed("<VALUE>THIRD</VALUE><VALUE>nowhere</VALUE><VALUE>second</VALUE>")),
              instanceElement(third + second));
    EXPECT_EQ(got(listed("")), instanceElement(""));
    std::string many = "<VALUE>THIRD</VALUE>";
    for (int i = 0; i < 100; ++i)
        many += "<VALUE>nowhere" + std::to_string(i) + "</VALUE><VALUE>Nowhere</VALUE>";
    EXPECT_EQ(got(listed(many + "<VALUE>second</VALUE><VALUE>Third</VALUE>")),
              instanceElement(third + second));
}

TEST(WrittenInstance, IsFilteredAlikeInEveryOperation) {
    const std::string expected = instanceElement(third);
    const std::string list = listed("<VALUE>third</VALUE>");
    const auto has = [&](const std::string& answer) {
        return answer.find(expected) != std::string::npos;
    };
    FakeOperations operations;
    operations.instances.append(fullInstance());
    operations.objects.append(CIMObject(fullInstance()));
    EXPECT_TRUE(has(returned(operations, "EnumerateInstances",
                             parameter("ClassName", "<CLASSNAME NAME=\"X\"/>") + list)));
    for (const char* operation : {"Associators", "References"})
        EXPECT_TRUE(
            has(returned(operations, operation, parameter("ObjectName", instanceName()) + list)));
}

} // namespace
} // namespace embedded::cimxml::test
