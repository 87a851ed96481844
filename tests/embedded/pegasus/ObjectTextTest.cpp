// toString() of objects is what goes over the wire.
#include "Throws.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>

using namespace Pegasus;
using apitest::text;

namespace {

CIMObjectPath hostOnly() {
    CIMObjectPath path("A.k=1");
    path.setHost("h");
    return path;
}

template <class T>
Array<T> list(std::initializer_list<T> items) {
    Array<T> array;
    for (const T& item : items)
        array.append(item);
    return array;
}

std::string instanceOf(const CIMProperty& property) {
    CIMInstance instance(CIMName("I"));
    instance.addProperty(property);
    std::string all = text(CIMObject(instance).toString());
    const std::string begin = "<INSTANCE CLASSNAME=\"I\" >\n";
    const std::string end = "</INSTANCE>\n";
    EXPECT_EQ(all.substr(0, begin.size()), begin);
    EXPECT_EQ(all.substr(all.size() - end.size()), end);
    return all.substr(begin.size(), all.size() - begin.size() - end.size());
}

TEST(ObjectText, OfScalars) {
    const struct {
        CIMValue value;
        std::string type;
        std::string content;
    } rows[] = {
        {CIMValue(Boolean(true)), "boolean", "TRUE"},
        {CIMValue(Boolean(false)), "boolean", "FALSE"},
        {CIMValue(Uint8(200)), "uint8", "200"},
        {CIMValue(Sint8(-100)), "sint8", "-100"},
        {CIMValue(Uint16(65535)), "uint16", "65535"},
        {CIMValue(Sint16(-32768)), "sint16", "-32768"},
        {CIMValue(Uint32(4294967295U)), "uint32", "4294967295"},
        {CIMValue(Sint32(-5)), "sint32", "-5"},
        {CIMValue(PEGASUS_UINT64_LITERAL(18446744073709551615)), "uint64", "18446744073709551615"},
        {CIMValue(PEGASUS_SINT64_LITERAL(-9223372036854775807)), "sint64", "-9223372036854775807"},
        {CIMValue(Real32(1.1F)), "real32", "1.1000000e+00"},
        {CIMValue(Real64(1.1)), "real64", "1.1000000000000001e+00"},
        {CIMValue(Char16('<')), "char16", "&lt;"},
        {CIMValue(Char16(0x20AC)), "char16", "\xE2\x82\xAC"},
        {CIMValue(String()), "string", ""},
        {CIMValue(String(" a  b<>&'\"\t\n\x7f ")), "string",
         "&#32;a &#32;b&lt;&gt;&amp;&apos;&quot;&#9;&#10;&#127;&#32;"},
        {CIMValue(String("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80")), "string",
         "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {CIMValue(String("   \xC3\xA4  ")), "string", "&#32; &#32;\xC3\xA4 &#32;"},
        {CIMValue(CIMDateTime("20200102030405.000000+060")), "datetime",
         "20200102030405.000000+060"},
    };
    for (const auto& [value, type, content] : rows) {
        std::string expected = "<PROPERTY NAME=\"p\"  TYPE=\"";
        expected += type + "\">\n<VALUE>" + content + "</VALUE>\n</PROPERTY>\n";
        EXPECT_EQ(instanceOf(CIMProperty(CIMName("p"), value)), expected);
    }
}

TEST(ObjectText, OfArrays) {
    EXPECT_EQ(instanceOf(CIMProperty(CIMName("p"), CIMValue(list<Uint16>({3, 4})), 2)),
              "<PROPERTY.ARRAY NAME=\"p\"  TYPE=\"uint16\" ARRAYSIZE=\"2\">\n"
              "<VALUE.ARRAY>\n<VALUE>3</VALUE>\n<VALUE>4</VALUE>\n</VALUE.ARRAY>\n"
              "</PROPERTY.ARRAY>\n");
    EXPECT_EQ(instanceOf(CIMProperty(CIMName("p"), CIMValue(list<String>({"a b", " c "})))),
              "<PROPERTY.ARRAY NAME=\"p\"  TYPE=\"string\">\n"
              "<VALUE.ARRAY>\n<VALUE>a b</VALUE>\n<VALUE>&#32;c&#32;</VALUE>\n</VALUE.ARRAY>\n"
              "</PROPERTY.ARRAY>\n");
    EXPECT_EQ(instanceOf(CIMProperty(CIMName("p"), CIMValue(Array<Boolean>()))),
              "<PROPERTY.ARRAY NAME=\"p\"  TYPE=\"boolean\">\n<VALUE.ARRAY>\n</VALUE.ARRAY>\n"
              "</PROPERTY.ARRAY>\n");
}

TEST(ObjectText, OfNulls) {
    EXPECT_EQ(instanceOf(CIMProperty(CIMName("p"), CIMValue(CIMTYPE_UINT16, false))),
              "<PROPERTY NAME=\"p\"  TYPE=\"uint16\">\n</PROPERTY>\n");
    EXPECT_EQ(instanceOf(CIMProperty(CIMName("p"), CIMValue(CIMTYPE_STRING, true))),
              "<PROPERTY.ARRAY NAME=\"p\"  TYPE=\"string\">\n</PROPERTY.ARRAY>\n");
    EXPECT_EQ(instanceOf(CIMProperty(CIMName("p"), CIMValue(CIMTYPE_REFERENCE, false))),
              "<PROPERTY.REFERENCE NAME=\"p\" >\n</PROPERTY.REFERENCE>\n");
}

TEST(ObjectText, OfReferences) {
    const std::string name = "<INSTANCENAME CLASSNAME=\"A\">\n"
                             "<KEYBINDING NAME=\"k\">\n"
                             "<KEYVALUE VALUETYPE=\"numeric\">1</KEYVALUE>\n"
                             "</KEYBINDING>\n"
                             "</INSTANCENAME>\n";
    const std::string nameSpace = "<LOCALNAMESPACEPATH>\n"
                                  "<NAMESPACE NAME=\"root\"/>\n"
                                  "<NAMESPACE NAME=\"x\"/>\n"
                                  "</LOCALNAMESPACEPATH>\n";
    const std::pair<CIMObjectPath, std::string> rows[] = {
        {CIMObjectPath(), "<INSTANCENAME CLASSNAME=\"\">\n</INSTANCENAME>\n"},
        {CIMObjectPath("A"), "<INSTANCENAME CLASSNAME=\"A\">\n</INSTANCENAME>\n"},
        {CIMObjectPath("A.k=1"), name},
        {CIMObjectPath("root/x:A.k=1"),
         "<LOCALINSTANCEPATH>\n" + nameSpace + name + "</LOCALINSTANCEPATH>\n"},
        {CIMObjectPath("//h:5988/root/x:A.k=1"),
         "<INSTANCEPATH>\n<NAMESPACEPATH>\n<HOST>h:5988</HOST>\n" + nameSpace +
             "</NAMESPACEPATH>\n" + name + "</INSTANCEPATH>\n"},
        {hostOnly(), "<INSTANCEPATH>\n<NAMESPACEPATH>\n<HOST>h</HOST>\n<LOCALNAMESPACEPATH>\n"
                     "</LOCALNAMESPACEPATH>\n</NAMESPACEPATH>\n" +
                         name + "</INSTANCEPATH>\n"},
        {CIMObjectPath("C.b=TRUE,r=\"root/x:A.k=1\",s=\"x<y\""),
         "<INSTANCENAME CLASSNAME=\"C\">\n"
         "<KEYBINDING NAME=\"b\">\n<KEYVALUE VALUETYPE=\"boolean\">TRUE</KEYVALUE>\n"
         "</KEYBINDING>\n"
         "<KEYBINDING NAME=\"r\">\n<VALUE.REFERENCE>\n<LOCALINSTANCEPATH>\n" +
             nameSpace + name +
             "</LOCALINSTANCEPATH>\n</VALUE.REFERENCE>\n</KEYBINDING>\n"
             "<KEYBINDING NAME=\"s\">\n<KEYVALUE VALUETYPE=\"string\">x&lt;y</KEYVALUE>\n"
             "</KEYBINDING>\n"
             "</INSTANCENAME>\n"},
    };
    for (const auto& [path, expected] : rows)
        EXPECT_EQ(instanceOf(CIMProperty(CIMName("p"), CIMValue(path), 0, CIMName("A"))),
                  "<PROPERTY.REFERENCE NAME=\"p\"  REFERENCECLASS=\"A\">\n<VALUE.REFERENCE>\n" +
                      expected + "</VALUE.REFERENCE>\n</PROPERTY.REFERENCE>\n");
}

TEST(ObjectText, OfEmbeddedObjectsIsQuoted) {
    CIMInstance inner(CIMName("B"));
    inner.addProperty(CIMProperty(CIMName("x"), CIMValue(String("<"))));
    const std::string quoted =
        "&lt;INSTANCE CLASSNAME=&quot;B&quot; &gt;&#10;&lt;PROPERTY NAME=&quot;x&quot; "
        "&#32;TYPE=&quot;string&quot;&gt;&#10;&lt;VALUE&gt;&amp;lt;&lt;/VALUE&gt;&#10;"
        "&lt;/PROPERTY&gt;&#10;&lt;/INSTANCE&gt;&#10;";
    EXPECT_EQ(instanceOf(CIMProperty(CIMName("p"), CIMValue(inner))),
              "<PROPERTY NAME=\"p\"  TYPE=\"string\" EmbeddedObject=\"instance\" "
              "EMBEDDEDOBJECT=\"instance\">\n<VALUE>" +
                  quoted + "</VALUE>\n</PROPERTY>\n");
    EXPECT_EQ(instanceOf(CIMProperty(CIMName("p"), CIMValue(list<CIMObject>({inner})))),
              "<PROPERTY.ARRAY NAME=\"p\"  TYPE=\"string\" EmbeddedObject=\"object\" "
              "EMBEDDEDOBJECT=\"object\">\n<VALUE.ARRAY>\n<VALUE>" +
                  quoted + "</VALUE>\n</VALUE.ARRAY>\n</PROPERTY.ARRAY>\n");
}

TEST(ObjectText, HasQualifiersAndOrigins) {
    CIMInstance instance(CIMName("I"));
    instance.addQualifier(
        CIMQualifier(CIMName("Q"), CIMValue(list<Uint32>({5})),
                     CIMFlavor::DEFAULTS + CIMFlavor::TRANSLATABLE + CIMFlavor::TOINSTANCE, true));
    CIMProperty property(CIMName("p"), CIMValue(Uint8(1)), 0, CIMName(), CIMName("Base"), true);
    property.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(Boolean(true))));
    instance.addProperty(property);
    const std::string expected =
        "<INSTANCE CLASSNAME=\"I\" >\n"
        "<QUALIFIER NAME=\"Q\" TYPE=\"uint32\" PROPAGATED=\"true\" TRANSLATABLE=\"true\">\n"
        "<VALUE.ARRAY>\n<VALUE>5</VALUE>\n</VALUE.ARRAY>\n</QUALIFIER>\n"
        "<PROPERTY NAME=\"p\"  CLASSORIGIN=\"Base\" PROPAGATED=\"true\" TYPE=\"uint8\">\n"
        "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\" TOSUBCLASS=\"false\">\n"
        "<VALUE>TRUE</VALUE>\n</QUALIFIER>\n"
        "<VALUE>1</VALUE>\n</PROPERTY>\n</INSTANCE>\n";
    EXPECT_EQ(text(CIMObject(instance).toString()), expected);
    EXPECT_EQ(text(CIMConstObject(instance).toString()), expected);
}

TEST(ObjectText, OfClasses) {
    EXPECT_EQ(text(CIMObject(CIMClass(CIMName("Bare"))).toString()),
              "<CLASS NAME=\"Bare\" >\n</CLASS>\n");
    CIMClass cls(CIMName("C"), CIMName("Base"));
    cls.addQualifier(CIMQualifier(CIMName("Q"), CIMValue(String("x")), CIMFlavor::DEFAULTS));
    cls.addQualifier(
        CIMQualifier(CIMName("O"), CIMValue(CIMTYPE_INSTANCE, false), CIMFlavor::DEFAULTS));
    cls.addProperty(CIMProperty(CIMName("r"), CIMValue(CIMTYPE_REFERENCE, false), 0, CIMName("A"),
                                CIMName("Base"), true));
    CIMMethod method(CIMName("m"), CIMTYPE_UINT32, CIMName("Base"), true);
    method.addQualifier(CIMQualifier(CIMName("Q"), CIMValue(Uint8(1)), CIMFlavor::DEFAULTS));
    method.addParameter(CIMParameter(CIMName("a"), CIMTYPE_STRING, true, 3));
    method.addParameter(CIMParameter(CIMName("b"), CIMTYPE_REFERENCE, false, 0, CIMName("A")));
    method.addParameter(CIMParameter(CIMName("c"), CIMTYPE_REFERENCE, true, 4, CIMName("A")));
    CIMParameter parameter(CIMName("d"), CIMTYPE_UINT8);
    parameter.addQualifier(CIMQualifier(CIMName("In"), CIMValue(true), CIMFlavor::DEFAULTS));
    method.addParameter(parameter);
    method.addParameter(CIMParameter(CIMName("e"), CIMTYPE_INSTANCE));
    cls.addMethod(method);
    cls.addMethod(CIMMethod(CIMName("n"), CIMTYPE_BOOLEAN));
    EXPECT_EQ(text(CIMObject(cls).toString()),
              "<CLASS NAME=\"C\"  SUPERCLASS=\"Base\" >\n"
              "<QUALIFIER NAME=\"Q\" TYPE=\"string\">\n<VALUE>x</VALUE>\n</QUALIFIER>\n"
              "<QUALIFIER NAME=\"O\" TYPE=\"instance\">\n</QUALIFIER>\n"
              "<PROPERTY.REFERENCE NAME=\"r\"  REFERENCECLASS=\"A\" CLASSORIGIN=\"Base\" "
              "PROPAGATED=\"true\">\n</PROPERTY.REFERENCE>\n"
              "<METHOD NAME=\"m\" TYPE=\"uint32\" CLASSORIGIN=\"Base\" PROPAGATED=\"true\">\n"
              "<QUALIFIER NAME=\"Q\" TYPE=\"uint8\">\n<VALUE>1</VALUE>\n</QUALIFIER>\n"
              "<PARAMETER.ARRAY NAME=\"a\" TYPE=\"string\" ARRAYSIZE=\"3\">\n</PARAMETER.ARRAY>\n"
              "<PARAMETER.REFERENCE NAME=\"b\" REFERENCECLASS=\"A\">\n</PARAMETER.REFERENCE>\n"
              "<PARAMETER.REFARRAY NAME=\"c\" REFERENCECLASS=\"A\" ARRAYSIZE=\"4\">\n"
              "</PARAMETER.REFARRAY>\n"
              "<PARAMETER NAME=\"d\" TYPE=\"uint8\">\n"
              "<QUALIFIER NAME=\"In\" TYPE=\"boolean\">\n<VALUE>TRUE</VALUE>\n</QUALIFIER>\n"
              "</PARAMETER>\n"
              "<PARAMETER NAME=\"e\" TYPE=\"instance\">\n</PARAMETER>\n"
              "</METHOD>\n"
              "<METHOD NAME=\"n\" TYPE=\"boolean\">\n</METHOD>\n"
              "</CLASS>\n");
}

} // namespace
