// What is wrong with the parameters of an operation, and what the client hears of it.
#include "Requests.h"

#include <gtest/gtest.h>

namespace embedded::cimxml::test {
namespace {

const std::string classX = parameter("ClassName", "<CLASSNAME NAME=\"X\"/>");

std::string answered(const std::string& operation, const std::string& parameters) {
    return recorded(operation, parameters);
}

std::string failed(int code, const std::string& description) {
    return "no call, but " + errorContent(code, description);
}

TEST(Parameters, ThatAreMissingAreNamed) {
    const std::pair<const char*, const char*> required[] = {
        {"GetClass", "ClassName"},           {"GetInstance", "InstanceName"},
        {"EnumerateInstances", "ClassName"}, {"EnumerateInstanceNames", "ClassName"},
        {"CreateInstance", "NewInstance"},   {"ModifyInstance", "ModifiedInstance"},
        {"DeleteInstance", "InstanceName"},  {"GetProperty", "InstanceName"},
        {"Associators", "ObjectName"},       {"AssociatorNames", "ObjectName"},
        {"References", "ObjectName"},        {"ReferenceNames", "ObjectName"},
        {"GetQualifier", "QualifierName"},
    };
    for (const auto& [operation, name] : required) {
        const std::string error = failed(4, "CIM_ERR_INVALID_PARAMETER: Required parameter &quot;" +
                                                std::string(name) + "&quot; missing from request.");
        EXPECT_EQ(answered(operation, ""), error);
        EXPECT_EQ(answered(operation, parameter(name, "")), error) << "null";
    }
    EXPECT_EQ(answered("GetProperty", parameter("InstanceName", instanceName())),
              failed(4, "CIM_ERR_INVALID_PARAMETER: Required parameter &quot;PropertyName&quot; "
                        "missing from request."));
}

TEST(Parameters, ThatAreThereTwiceAreAnError) {
    const std::string error =
        failed(4, "CIM_ERR_INVALID_PARAMETER: Duplicated request input parameter.");
    EXPECT_EQ(answered("GetClass", classX + classX), error);
    EXPECT_EQ(answered("GetClass", parameter("ClassName", "") + classX), error);
    EXPECT_EQ(answered("GetClass", classX + parameter("classname", "")), error);
}

TEST(Parameters, ThatTheOperationDoesNotHaveAreAnError) {
    EXPECT_EQ(answered("GetClass", classX + parameter("Zip", "<VALUE>1</VALUE>")),
              failed(7, "CIM_ERR_NOT_SUPPORTED: Unrecognized or invalid request input parameter "
                        "&quot;Zip&quot;"));
    EXPECT_EQ(
        answered("EnumerateInstanceNames", classX + parameter("LocalOnly", "<VALUE>TRUE</VALUE>")),
        failed(7, "CIM_ERR_NOT_SUPPORTED: Unrecognized or invalid request input parameter "
                  "&quot;LocalOnly&quot;"));
}

TEST(Parameters, TakeTheirNamesInAnyCase) {
    EXPECT_EQ(answered("EnumerateInstanceNames", parameter("CLASSname", "<CLASSNAME NAME=\"X\"/>")),
              "enumerateInstanceNames root/cimv2 X");
}

TEST(Parameters, ThatAreNullHaveTheirDefaults) {
    EXPECT_EQ(answered("GetClass", classX + parameter("LocalOnly", "") +
                                       parameter("IncludeClassOrigin", "\n") +
                                       parameter("PropertyList", "<!-- none -->")),
              "getClass root/cimv2 X 1 1 0 -");
}

TEST(Parameters, ThatAreBooleanTakeTwoWords) {
    const auto deep = [](const std::string& value) {
        return answered("EnumerateClassNames",
                        parameter("DeepInheritance", "<VALUE>" + value + "</VALUE>"));
    };
    EXPECT_EQ(deep("true"), "enumerateClassNames root/cimv2 - 1");
    EXPECT_EQ(deep(" False\n"), "enumerateClassNames root/cimv2 - 0");
    for (const char* value : {"maybe", "1", "", "TRUEFALSE"}) {
        const std::string operation = "EnumerateClassNames";
        const std::string words = "<VALUE>" + std::string(value) + "</VALUE>";
        EXPECT_EQ(rejection(request(operation, parameter("DeepInheritance", words)),
                            headersFor(operation)),
                  "400 request-not-valid")
            << value;
    }
}

TEST(PropertyList, KeepsTheFirstSpellingOfEachName) {
    EXPECT_EQ(answered("EnumerateInstances",
                       classX + parameter("PropertyList",
                                          "<VALUE.ARRAY><VALUE>Name</VALUE><VALUE>b</VALUE>"
                                          "<VALUE>NAME</VALUE><VALUE>B</VALUE>"
                                          "<VALUE>c</VALUE></VALUE.ARRAY>")),
              "enumerateInstances root/cimv2 X 1 0 0 [Name,b,c]");
}

TEST(PropertyList, HoldsLegalNames) {
    for (const char* item : {"<VALUE>a b</VALUE>", "<VALUE></VALUE>", "<VALUE.NULL/>"}) {
        const std::string answer =
            answered("EnumerateInstances",
                     classX + parameter("PropertyList",
                                        "<VALUE.ARRAY>" + std::string(item) + "</VALUE.ARRAY>"));
        EXPECT_NE(answer.find("CODE=\"4\" DESCRIPTION=\"CIM_ERR_INVALID_PARAMETER: The CIM name "
                              "is not valid:"),
                  std::string::npos)
            << answer;
    }
}

TEST(Parameters, OfTheWrongKindMakeTheDocumentInvalid) {
    const std::tuple<const char*, const char*, std::string> wrong[] = {
        {"GetClass", "ClassName", "<VALUE>X</VALUE>"},
        {"GetClass", "ClassName", instanceName()},
        {"GetInstance", "InstanceName", "<CLASSNAME NAME=\"X\"/>"},
        {"GetInstance", "PropertyList", "<VALUE>a</VALUE>"},
        {"GetInstance", "IncludeQualifiers", "<VALUE.ARRAY/>"},
        {"CreateInstance", "NewInstance", instanceName()},
        {"ModifyInstance", "ModifiedInstance", "<INSTANCE CLASSNAME=\"X\"/>"},
        {"Associators", "ObjectName", "<VALUE>X</VALUE>"},
        {"Associators", "Role", "<CLASSNAME NAME=\"X\"/>"},
        {"GetQualifier", "QualifierName", "<CLASSNAME NAME=\"X\"/>"},
    };
    for (const auto& [operation, name, value] : wrong)
        EXPECT_EQ(rejection(request(operation, parameter(name, value)), headersFor(operation)),
                  "400 request-not-valid")
            << operation << " " << name;
}

} // namespace
} // namespace embedded::cimxml::test
