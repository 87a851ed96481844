// Each intrinsic operation: the call that a request makes, with the defaults of DSP0200 clause
// 5.3.2, and the response to what comes back.
#include "Requests.h"

#include <gtest/gtest.h>

namespace embedded::cimxml::test {
namespace {

using namespace Pegasus;

const std::string classX = parameter("ClassName", "<CLASSNAME NAME=\"X\"/>");
const std::string pathX = parameter("InstanceName", instanceName());
const std::string objectX = parameter("ObjectName", instanceName());

std::string flag(const std::string& name, bool value) {
    return parameter(name, value ? "<VALUE>TRUE</VALUE>" : "<VALUE>FALSE</VALUE>");
}

std::string text(const std::string& name, const std::string& value) {
    return parameter(name, "<VALUE>" + value + "</VALUE>");
}

std::string className(const std::string& name, const std::string& value) {
    return parameter(name, "<CLASSNAME NAME=\"" + value + "\"/>");
}

const std::string listAB =
    parameter("PropertyList", "<VALUE.ARRAY><VALUE>a</VALUE><VALUE>b</VALUE></VALUE.ARRAY>");
const std::string emptyList = parameter("PropertyList", "<VALUE.ARRAY></VALUE.ARRAY>");

struct Row {
    const char* operation;
    std::string parameters;
    std::string call;
};

class DecodedCall : public testing::TestWithParam<Row> {};

TEST_P(DecodedCall, CarriesTheParametersOrTheirDefaults) {
    EXPECT_EQ(recorded(GetParam().operation, GetParam().parameters), GetParam().call);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, DecodedCall,
    testing::Values(
        Row{"GetClass", classX, "getClass root/cimv2 X 1 1 0 -"},
        Row{"GetClass",
            classX + flag("LocalOnly", false) + flag("IncludeQualifiers", false) +
                flag("IncludeClassOrigin", true) + listAB,
            "getClass root/cimv2 X 0 0 1 [a,b]"},
        Row{"EnumerateClasses", "", "enumerateClasses root/cimv2 - 0 1 1 0"},
        Row{"EnumerateClasses",
            classX + flag("DeepInheritance", true) + flag("LocalOnly", false) +
                flag("IncludeQualifiers", false) + flag("IncludeClassOrigin", true),
            "enumerateClasses root/cimv2 X 1 0 0 1"},
        Row{"EnumerateClassNames", "", "enumerateClassNames root/cimv2 - 0"},
        Row{"EnumerateClassNames", classX + flag("DeepInheritance", true),
            "enumerateClassNames root/cimv2 X 1"},
        Row{"GetInstance", pathX, "getInstance root/cimv2 X.a=\"1\" 0 0 -"},
        Row{"GetInstance",
            pathX + flag("LocalOnly", false) + flag("IncludeQualifiers", true) +
                flag("IncludeClassOrigin", true) + emptyList,
            "getInstance root/cimv2 X.a=\"1\" 1 1 []"},
        Row{"EnumerateInstances", classX, "enumerateInstances root/cimv2 X 1 0 0 -"},
        Row{"EnumerateInstances",
            classX + flag("LocalOnly", true) + flag("DeepInheritance", false) +
                flag("IncludeQualifiers", true) + flag("IncludeClassOrigin", true) + listAB,
            "enumerateInstances root/cimv2 X 0 1 1 [a,b]"},
        Row{"EnumerateInstanceNames", classX, "enumerateInstanceNames root/cimv2 X"},
        Row{"CreateInstance", parameter("NewInstance", "<INSTANCE CLASSNAME=\"X\"></INSTANCE>"),
            "createInstance root/cimv2 X"},
        Row{"ModifyInstance",
            parameter("ModifiedInstance", "<VALUE.NAMEDINSTANCE>" + instanceName() +
                                              "<INSTANCE CLASSNAME=\"X\"/></VALUE.NAMEDINSTANCE>"),
            "modifyInstance root/cimv2 X.a=\"1\" 1 -"},
        Row{"ModifyInstance",
            flag("IncludeQualifiers", false) + listAB +
                parameter("ModifiedInstance",
                          "<VALUE.NAMEDINSTANCE>" + instanceName() +
                              "<INSTANCE CLASSNAME=\"X\"/></VALUE.NAMEDINSTANCE>"),
            "modifyInstance root/cimv2 X.a=\"1\" 0 [a,b]"},
        Row{"DeleteInstance", pathX, "deleteInstance root/cimv2 X.a=\"1\""},
        Row{"GetProperty", pathX + text("PropertyName", "p"), "getProperty root/cimv2 X.a=\"1\" p"},
        Row{"Associators", objectX, "associators root/cimv2 X.a=\"1\" - - - - 0 0 -"},
        Row{"Associators",
            objectX + className("AssocClass", "A") + className("ResultClass", "R") +
                text("Role", "r") + text("ResultRole", "s") + flag("IncludeQualifiers", true) +
                flag("IncludeClassOrigin", true) + listAB,
            "associators root/cimv2 X.a=\"1\" A R r s 1 1 [a,b]"},
        Row{"AssociatorNames", objectX, "associatorNames root/cimv2 X.a=\"1\" - - - -"},
        Row{"AssociatorNames",
            objectX + className("AssocClass", "A") + className("ResultClass", "R") +
                text("Role", "r") + text("ResultRole", "s"),
            "associatorNames root/cimv2 X.a=\"1\" A R r s"},
        Row{"References", objectX, "references root/cimv2 X.a=\"1\" - - 0 0 -"},
        Row{"References",
            objectX + className("ResultClass", "R") + text("Role", "r") +
                flag("IncludeQualifiers", true) + flag("IncludeClassOrigin", true) + listAB,
            "references root/cimv2 X.a=\"1\" R r 1 1 [a,b]"},
        Row{"ReferenceNames", objectX, "referenceNames root/cimv2 X.a=\"1\" - -"},
        Row{"ReferenceNames", objectX + className("ResultClass", "R") + text("Role", "r"),
            "referenceNames root/cimv2 X.a=\"1\" R r"},
        Row{"GetQualifier", text("QualifierName", "Key"), "getQualifier root/cimv2 Key"},
        Row{"EnumerateQualifiers", "", "enumerateQualifiers root/cimv2"}));

TEST(Operations, TakeTheirNamesInAnyCase) {
    EXPECT_EQ(recorded("enumerateclassnames", ""), "enumerateClassNames root/cimv2 - 0");
}

TEST(Operations, PassTheCallerOn) {
    FakeOperations operations;
    routing::Caller caller;
    caller.userName = "operator";
    answer(request("EnumerateClassNames", ""), headersFor("EnumerateClassNames"), caller,
           operations, operations.enumerations);
    EXPECT_TRUE(operations.lastCaller.userName == "operator");
}

class NotServed : public testing::TestWithParam<const char*> {};

TEST_P(NotServed, IsNotSupported) {
    // Parameters are not looked at: a client that tries pull operations first wants to hear this.
    EXPECT_EQ(recorded(GetParam(), text("MaxObjectCount", "100") + classX),
              "no call, but " +
                  errorContent(7, "CIM_ERR_NOT_SUPPORTED: This server does not support " +
                                      std::string(GetParam()) + "."));
}

INSTANTIATE_TEST_SUITE_P(Operations, NotServed,
                         testing::Values("CreateClass", "ModifyClass", "DeleteClass", "SetProperty",
                                         "SetQualifier", "DeleteQualifier", "ExecQuery",
                                         "OpenQueryInstances", "PullInstances",
                                         "EnumerationCount"));

// Responses

const std::string writtenName = "<INSTANCENAME CLASSNAME=\"X\">\n"
                                "<KEYBINDING NAME=\"a\">\n"
                                "<KEYVALUE VALUETYPE=\"string\">1</KEYVALUE>\n"
                                "</KEYBINDING>\n"
                                "</INSTANCENAME>\n";

CIMObjectPath pathWithHost() { return CIMObjectPath("//switch/root/cimv2:X.a=\"1\""); }

TEST(Responses, ToEnumerateClassesHoldClasses) {
    FakeOperations operations;
    operations.classes.append(CIMClass(CIMName("C")));
    operations.classes.append(CIMClass(CIMName("D"), CIMName("C")));
    EXPECT_EQ(returned(operations, "EnumerateClasses", ""),
              "<CLASS NAME=\"C\" >\n</CLASS>\n"
              "<CLASS NAME=\"D\"  SUPERCLASS=\"C\" >\n</CLASS>\n");
}

TEST(Responses, ToCreateInstanceHoldTheName) {
    FakeOperations operations;
    operations.createdPath = pathWithHost();
    EXPECT_EQ(returned(operations, "CreateInstance",
                       parameter("NewInstance", "<INSTANCE CLASSNAME=\"X\"/>")),
              writtenName);
}

TEST(Responses, ToModifyAndDeleteAreEmpty) {
    FakeOperations operations;
    EXPECT_EQ(content(operations, "DeleteInstance", pathX), "");
    EXPECT_EQ(content(operations, "ModifyInstance",
                      parameter("ModifiedInstance",
                                "<VALUE.NAMEDINSTANCE>" + instanceName() +
                                    "<INSTANCE CLASSNAME=\"X\"/></VALUE.NAMEDINSTANCE>")),
              "");
}

TEST(Responses, ToGetPropertyHoldTheValueOrNothingForNull) {
    FakeOperations operations;
    const std::string parameters = pathX + text("PropertyName", "p");
    operations.value = CIMValue(Uint8(5));
    EXPECT_EQ(returned(operations, "GetProperty", parameters), "<VALUE>5</VALUE>\n");
    operations.value = CIMValue(CIMObjectPath("X.a=\"1\""));
    EXPECT_EQ(returned(operations, "GetProperty", parameters),
              "<VALUE.REFERENCE>\n" + writtenName + "</VALUE.REFERENCE>\n");
    operations.value = CIMValue(CIMTYPE_STRING, false);
    EXPECT_EQ(content(operations, "GetProperty", parameters), "");
}

TEST(Responses, WithNothingOfOneSourceHaveNoReturnValue) {
    FakeOperations operations;
    EXPECT_EQ(content(operations, "EnumerateInstances", classX), "");
    EXPECT_EQ(content(operations, "EnumerateInstanceNames", classX), "");
    EXPECT_EQ(content(operations, "Associators", objectX), "");
    EXPECT_EQ(content(operations, "ReferenceNames", objectX), "");
    EXPECT_EQ(content(operations, "EnumerateClassNames", ""), "");
    EXPECT_EQ(content(operations, "EnumerateQualifiers", ""), "");
}

TEST(Responses, WithNothingOfSeveralLegsHaveAnEmptyReturnValue) {
    FakeOperations operations;
    operations.sources = 2;
    for (const auto& [operation, parameters] :
         {std::pair("EnumerateInstances", classX), std::pair("EnumerateInstanceNames", classX),
          std::pair("Associators", objectX), std::pair("AssociatorNames", objectX),
          std::pair("References", objectX), std::pair("ReferenceNames", objectX)})
        EXPECT_EQ(content(operations, operation, parameters), "<IRETURNVALUE>\n</IRETURNVALUE>\n");
}

TEST(Responses, ToQualifierQueriesHoldDeclarations) {
    FakeOperations operations;
    operations.qualifier =
        CIMQualifierDecl(CIMName("Key"), CIMValue(Boolean(false)), CIMScope::PROPERTY);
    operations.qualifiers.append(operations.qualifier);
    const std::string declaration = "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\">\n"
                                    "<SCOPE PROPERTY=\"true\"/><VALUE>FALSE</VALUE>\n"
                                    "</QUALIFIER.DECLARATION>\n";
    EXPECT_EQ(returned(operations, "GetQualifier", text("QualifierName", "Key")), declaration);
    EXPECT_EQ(returned(operations, "EnumerateQualifiers", ""), declaration);
}

// Errors

TEST(Responses, WithAnErrorNameItsStatusAndMessage) {
    FakeOperations operations;
    operations.failure = CIMException(CIM_ERR_NOT_FOUND, "X.a=\"<1>\"");
    EXPECT_EQ(content(operations, "GetInstance", pathX),
              errorContent(6, "CIM_ERR_NOT_FOUND: X.a=&quot;&lt;1&gt;&quot;"));
}

TEST(Responses, WithAnErrorWithoutMessageNameItsStatus) {
    FakeOperations operations;
    operations.failure = CIMException(CIM_ERR_INVALID_NAMESPACE);
    EXPECT_EQ(content(operations, "GetInstance", pathX),
              errorContent(3, "CIM_ERR_INVALID_NAMESPACE"));
}

TEST(Responses, FailWhenAnObjectCannotBeWritten) {
    FakeOperations operations; // its instance is uninitialized
    EXPECT_EQ(content(operations, "GetInstance", pathX),
              errorContent(1, "CIM_ERR_FAILED: uninitialized object"));
}

TEST(Responses, RepeatTheMessageId) {
    FakeOperations operations;
    std::string body = request("EnumerateClassNames", "");
    body.replace(body.find("1001"), 4, "&lt;1&quot; &amp;amp;");
    const std::string reply = answer(body, headersFor("EnumerateClassNames"), routing::Caller(),
                                     operations, operations.enumerations);
    EXPECT_NE(reply.find("<MESSAGE ID=\"&lt;1&quot; &amp;amp;\" PROTOCOLVERSION=\"1.0\">\n"),
              std::string::npos)
        << reply;
}

} // namespace
} // namespace embedded::cimxml::test
