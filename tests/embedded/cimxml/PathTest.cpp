// Object paths in requests and in replies.
#include "Requests.h"

#include "cimxml/Objects.h"
#include "embedding/XmlWriter.h"

#include <gtest/gtest.h>

namespace embedded::cimxml::test {
namespace {

using namespace Pegasus;
using namespace Pegasus::embedding;

std::string got(const std::string& instanceName) {
    return recorded("DeleteInstance", parameter("InstanceName", instanceName));
}

std::string withKey(const std::string& key) {
    return got("<INSTANCENAME CLASSNAME=\"X\"><KEYBINDING NAME=\"k\">" + key +
               "</KEYBINDING></INSTANCENAME>");
}

const std::string deleted = "deleteInstance root/cimv2 ";

std::string invalid(const std::string& message) {
    return "no call, but " + errorContent(4, "CIM_ERR_INVALID_PARAMETER: " + message);
}

TEST(KeyValue, IsOfTheTypeThatItNames) {
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"string\">1</KEYVALUE>"), deleted + "X.k=\"1\"");
    EXPECT_EQ(withKey("<KEYVALUE>1</KEYVALUE>"), deleted + "X.k=\"1\"");
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"numeric\"> 12 </KEYVALUE>"), deleted + "X.k=12");
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"numeric\">-0x1F</KEYVALUE>"), deleted + "X.k=-0x1F");
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"numeric\">1.5e3</KEYVALUE>"), deleted + "X.k=1.5e3");
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"boolean\">true</KEYVALUE>"), deleted + "X.k=TRUE");
    EXPECT_EQ(withKey("<KEYVALUE TYPE=\"uint16\">3</KEYVALUE>"), deleted + "X.k=3");
    EXPECT_EQ(withKey("<KEYVALUE TYPE=\"boolean\">FALSE</KEYVALUE>"), deleted + "X.k=FALSE");
    for (const char* type : {"string", "char16", "datetime"})
        EXPECT_EQ(withKey("<KEYVALUE TYPE=\"" + std::string(type) + "\">3</KEYVALUE>"),
                  deleted + "X.k=\"3\"");
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"numeric\">18446744073709551615</KEYVALUE>"),
              deleted + "X.k=18446744073709551615");
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"string\" TYPE=\"datetime\">3</KEYVALUE>"),
              deleted + "X.k=\"3\"");
}

TEST(KeyValue, KeepsEveryCharacterOfAString) {
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"string\"> a<![CDATA[<&]]>&#32;&quot;\xC3\xA9 "
                      "</KEYVALUE>"),
              deleted + "X.k=\" a<& \\\"\xC3\xA9 \"");
}

TEST(KeyValue, MayBeNothingButBlanks) {
    EXPECT_EQ(withKey("<KEYVALUE>  </KEYVALUE>"), deleted + "X.k=\"  \"");
}

TEST(KeyValue, ThatIsNoneOfItsTypeIsInvalid) {
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"numeric\">one</KEYVALUE>"),
              invalid("Invalid numeric value &quot;one&quot;."));
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"numeric\"></KEYVALUE>"),
              invalid("Invalid numeric value &quot;&quot;."));
    EXPECT_EQ(withKey("<KEYVALUE VALUETYPE=\"boolean\">1</KEYVALUE>"),
              invalid("Invalid boolean value &quot;1&quot;."));
}

TEST(KeyValue, OfAnUnknownTypeMakesTheDocumentInvalid) {
    for (const char* attribute : {"VALUETYPE=\"reference\"", "VALUETYPE=\"\"", "TYPE=\"int\""}) {
        const std::string key = "<INSTANCENAME CLASSNAME=\"X\"><KEYBINDING NAME=\"k\"><KEYVALUE " +
                                std::string(attribute) +
                                ">1</KEYVALUE></KEYBINDING></INSTANCENAME>";
        EXPECT_EQ(rejection(request("DeleteInstance", parameter("InstanceName", key)),
                            headersFor("DeleteInstance")),
                  "400 request-not-valid");
    }
}

TEST(InstanceName, MayHaveAnyNumberOfKeys) {
    EXPECT_EQ(got("<INSTANCENAME CLASSNAME=\"X\"/>"), deleted + "X");
    EXPECT_EQ(got("<INSTANCENAME CLASSNAME=\"X\">\n"
                  "<KEYBINDING NAME=\"b\"><KEYVALUE>2</KEYVALUE></KEYBINDING>\n"
                  "<KEYBINDING NAME=\"a\"><KEYVALUE>1</KEYVALUE></KEYBINDING>\n"
                  "</INSTANCENAME>"),
              deleted + "X.a=\"1\",b=\"2\"");
}

CIMClass classWithKeys(unsigned count) {
    CIMClass cimClass(CIMName("X"));
    for (const char* name : {"first", "second"}) {
        if (count-- == 0)
            break;
        CIMProperty key(CIMName(name), CIMValue(CIMTYPE_STRING, false));
        key.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(Boolean(true))));
        cimClass.addProperty(key);
    }
    return cimClass;
}

TEST(InstanceName, MayLeaveTheNameOfTheOneKeyToTheClass) {
    FakeOperations operations;
    operations.cimClass = classWithKeys(1);
    content(operations, "DeleteInstance",
            parameter("InstanceName",
                      "<INSTANCENAME CLASSNAME=\"X\"><KEYVALUE>1</KEYVALUE></INSTANCENAME>"));
    content(operations, "DeleteInstance",
            parameter("InstanceName",
                      "<INSTANCENAME CLASSNAME=\"X\"><VALUE.REFERENCE><INSTANCENAME "
                      "CLASSNAME=\"Y\"><KEYBINDING NAME=\"b\"><KEYVALUE>2</KEYVALUE></KEYBINDING>"
                      "</INSTANCENAME></VALUE.REFERENCE></INSTANCENAME>"));
    EXPECT_EQ(
        operations.calls,
        (std::vector<std::string>{"keyNames root/cimv2 X", deleted + "X.first=\"1\"",
                                  "keyNames root/cimv2 X", deleted + "X.first=\"Y.b=\\\"2\\\"\""}));
}

TEST(InstanceName, NeedsTheKeyNameWhenTheClassHasNotExactlyOne) {
    for (const unsigned count : {0U, 2U}) {
        FakeOperations operations;
        operations.cimClass = classWithKeys(count);
        EXPECT_EQ(
            content(operations, "DeleteInstance",
                    parameter("InstanceName", "<INSTANCENAME CLASSNAME=\"X\"><KEYVALUE>1</KEYVALUE>"
                                              "</INSTANCENAME>")),
            errorContent(4, "CIM_ERR_INVALID_PARAMETER: A key value of class X needs its "
                            "name: the class has not exactly one key."));
        EXPECT_EQ(operations.calls.size(), 1U);
    }
}

const std::string nameY = "<INSTANCENAME CLASSNAME=\"Y\"><KEYBINDING NAME=\"b\">"
                          "<KEYVALUE VALUETYPE=\"numeric\">2</KEYVALUE></KEYBINDING>"
                          "</INSTANCENAME>";
const std::string localSpace = "<LOCALNAMESPACEPATH>\n<NAMESPACE NAME=\"root\"/>"
                               "<NAMESPACE NAME=\"x\"/>\n</LOCALNAMESPACEPATH>";
const std::string fullSpace =
    "<NAMESPACEPATH>\n<HOST>switch</HOST>\n" + localSpace + "</NAMESPACEPATH>";

std::string reference(const std::string& path) {
    return "<VALUE.REFERENCE>\n" + path + "\n</VALUE.REFERENCE>";
}

TEST(ReferenceKey, MayBeGivenInEveryForm) {
    const std::pair<std::string, std::string> forms[] = {
        {nameY, "Y.b=2"},
        {"<LOCALINSTANCEPATH>" + localSpace + "\n" + nameY + "\n</LOCALINSTANCEPATH>",
         "root/x:Y.b=2"},
        {"<INSTANCEPATH>" + fullSpace + "\n" + nameY + "<!-- end --></INSTANCEPATH>",
         "//switch/root/x:Y.b=2"},
        {"<CLASSNAME NAME=\"Y\"/>", "Y"},
        {"<LOCALCLASSPATH>" + localSpace + "<CLASSNAME NAME=\"Y\"/></LOCALCLASSPATH>", "root/x:Y"},
        {"<CLASSPATH>" + fullSpace + "<CLASSNAME NAME=\"Y\"/></CLASSPATH>", "//switch/root/x:Y"},
    };
    for (const auto& [path, expected] : forms)
        EXPECT_EQ(withKey(reference(path)), deleted + "X.k=\"" + expected + "\"");
}

TEST(ReferenceKey, NeedsALegalHost) {
    std::string space = fullSpace;
    space.replace(space.find("switch"), 6, "not a host");
    const std::string answer =
        withKey(reference("<INSTANCEPATH>" + space + nameY + "</INSTANCEPATH>"));
    EXPECT_EQ(answer.find("no call, but <ERROR CODE=\"4\""), 0U) << answer;
    EXPECT_NE(answer.find("malformed object name: not a host"), std::string::npos) << answer;
}

TEST(ReferenceKey, MayBeNested) {
    const std::string inner = "<INSTANCENAME CLASSNAME=\"Y\"><KEYBINDING NAME=\"b\"><KEYVALUE "
                              "VALUETYPE=\"numeric\">2</KEYVALUE></KEYBINDING></INSTANCENAME>";
    EXPECT_EQ(withKey(reference("<INSTANCENAME CLASSNAME=\"Y\"><KEYBINDING NAME=\"b\">" +
                                reference(inner) + "</KEYBINDING></INSTANCENAME>")),
              deleted + "X.k=\"Y.b=\\\"Y.b=2\\\"\"");
}

// Replies

CIMObjectPath pathOf(const char* host, const char* nameSpace, const Array<CIMKeyBinding>& keys) {
    return CIMObjectPath(host,
                         *nameSpace == '\0' ? CIMNamespaceName() : CIMNamespaceName(nameSpace),
                         CIMName("X"), keys);
}

std::string written(const CIMObjectPath& path) {
    std::string out;
    appendReference(out, path);
    return out;
}

const std::string emptyName = "<INSTANCENAME CLASSNAME=\"X\">\n</INSTANCENAME>\n";
const std::string writtenSpace = "<LOCALNAMESPACEPATH>\n"
                                 "<NAMESPACE NAME=\"root\"/>\n"
                                 "<NAMESPACE NAME=\"x\"/>\n"
                                 "</LOCALNAMESPACEPATH>\n";

TEST(WrittenReference, HasTheFormThatHostAndNamespaceCallFor) {
    EXPECT_EQ(written(pathOf("", "", {})),
              "<VALUE.REFERENCE>\n" + emptyName + "</VALUE.REFERENCE>\n");
    EXPECT_EQ(written(pathOf("", "root/x", {})), "<VALUE.REFERENCE>\n<LOCALINSTANCEPATH>\n" +
                                                     writtenSpace + emptyName +
                                                     "</LOCALINSTANCEPATH>\n</VALUE.REFERENCE>\n");
    EXPECT_EQ(written(pathOf("switch:5988", "root/x", {})),
              "<VALUE.REFERENCE>\n<INSTANCEPATH>\n<NAMESPACEPATH>\n<HOST>switch:5988</HOST>\n" +
                  writtenSpace + "</NAMESPACEPATH>\n" + emptyName +
                  "</INSTANCEPATH>\n</VALUE.REFERENCE>\n");
    EXPECT_EQ(written(pathOf("switch", "", {})),
              "<VALUE.REFERENCE>\n<INSTANCEPATH>\n<NAMESPACEPATH>\n<HOST>switch</HOST>\n"
              "<LOCALNAMESPACEPATH>\n</LOCALNAMESPACEPATH>\n</NAMESPACEPATH>\n" +
                  emptyName + "</INSTANCEPATH>\n</VALUE.REFERENCE>\n");
}

TEST(WrittenReference, OfAnEmptyPathHasAnEmptyClassName) {
    EXPECT_EQ(written(CIMObjectPath()),
              "<VALUE.REFERENCE>\n<INSTANCENAME CLASSNAME=\"\">\n</INSTANCENAME>\n"
              "</VALUE.REFERENCE>\n");
}

TEST(WrittenKeys, NameTheirTypesAndComeSorted) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("d"), CIMValue(CIMObjectPath("root/x:Y.b=2"))));
    keys.append(CIMKeyBinding(CIMName("C"), CIMValue(Boolean(true))));
    keys.append(CIMKeyBinding(CIMName("b"), CIMValue(Sint8(-5))));
    keys.append(CIMKeyBinding(CIMName("a"), CIMValue(String("<\"1\">"))));
    EXPECT_EQ(written(pathOf("", "", keys)),
              "<VALUE.REFERENCE>\n"
              "<INSTANCENAME CLASSNAME=\"X\">\n"
              "<KEYBINDING NAME=\"a\">\n"
              "<KEYVALUE VALUETYPE=\"string\">&lt;&quot;1&quot;&gt;</KEYVALUE>\n"
              "</KEYBINDING>\n"
              "<KEYBINDING NAME=\"b\">\n"
              "<KEYVALUE VALUETYPE=\"numeric\">-5</KEYVALUE>\n"
              "</KEYBINDING>\n"
              "<KEYBINDING NAME=\"C\">\n"
              "<KEYVALUE VALUETYPE=\"boolean\">TRUE</KEYVALUE>\n"
              "</KEYBINDING>\n"
              "<KEYBINDING NAME=\"d\">\n"
              "<VALUE.REFERENCE>\n<LOCALINSTANCEPATH>\n" +
                  writtenSpace +
                  "<INSTANCENAME CLASSNAME=\"Y\">\n"
                  "<KEYBINDING NAME=\"b\">\n"
                  "<KEYVALUE VALUETYPE=\"numeric\">2</KEYVALUE>\n"
                  "</KEYBINDING>\n"
                  "</INSTANCENAME>\n"
                  "</LOCALINSTANCEPATH>\n</VALUE.REFERENCE>\n"
                  "</KEYBINDING>\n"
                  "</INSTANCENAME>\n"
                  "</VALUE.REFERENCE>\n");
}

} // namespace
} // namespace embedded::cimxml::test
