// Extrinsic methods: there is no provider for any.
#include "Requests.h"

#include <gtest/gtest.h>

namespace embedded::cimxml::test {
namespace {

using namespace Pegasus;

const std::string space = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/></LOCALNAMESPACEPATH>";
const std::string onInstance =
    "<LOCALINSTANCEPATH>" + space + instanceName() + "</LOCALINSTANCEPATH>";
const std::string onClass = "<LOCALCLASSPATH>" + space + "<CLASSNAME NAME=\"X\"/></LOCALCLASSPATH>";

std::string methodCall(const std::string& method, const std::string& target) {
    return "<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"7\" "
           "PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><METHODCALL NAME=\"" +
           method + "\">" + target +
           "<PARAMVALUE NAME=\"in\" PARAMTYPE=\"uint8\"><VALUE>1</VALUE></PARAMVALUE>"
           "</METHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

std::string answerTo(FakeOperations& operations, const std::string& method,
                     const std::string& target, const std::string& object) {
    return answer(methodCall(method, target), {method, object, "1.0"}, routing::Caller(),
                  operations, operations.enumerations);
}

std::string errorReply(const std::string& method, int code, const std::string& description) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
           "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
           "<MESSAGE ID=\"7\" PROTOCOLVERSION=\"1.0\">\n"
           "<SIMPLERSP>\n"
           "<METHODRESPONSE NAME=\"" +
           method + "\">\n" + errorContent(code, description) +
           "</METHODRESPONSE>\n</SIMPLERSP>\n</MESSAGE>\n</CIM>\n";
}

struct WithMethod : FakeOperations {
    WithMethod() {
        cimClass = CIMClass(CIMName("X"));
        cimClass.addMethod(CIMMethod(CIMName("Start"), CIMTYPE_UINT32));
    }
};

TEST(MethodCall, OfAMethodThatTheClassHasNotIsNotFound) {
    WithMethod operations;
    const std::string expected = errorReply("Stop", 17, "CIM_ERR_METHOD_NOT_FOUND: Stop");
    EXPECT_EQ(answerTo(operations, "Stop", onInstance, "root:X.a=\"1\""), expected);
    EXPECT_EQ(answerTo(operations, "Stop", onClass, "root:X"), expected);
    EXPECT_EQ(operations.calls.at(0), "getClass root X 0 0 0 []");
}

TEST(MethodCall, OfAMethodThatTheClassHasIsNotAvailable) {
    WithMethod operations;
    EXPECT_EQ(answerTo(operations, "start", onInstance, "root:X.a=\"1\""),
              errorReply("start", 16,
                         "CIM_ERR_METHOD_NOT_AVAILABLE: No provider for method start of class X."));
}

TEST(MethodCall, OnAnUnknownClassSaysWhatGetClassSays) {
    FakeOperations operations;
    operations.failure = CIMException(CIM_ERR_NOT_FOUND, "X");
    EXPECT_EQ(answerTo(operations, "Start", onClass, "root:X"),
              errorReply("Start", 6, "CIM_ERR_NOT_FOUND: X"));
}

TEST(MethodCall, ComparesNamespaceAndClassWithTheHeader) {
    const std::string mismatch = "400 header-mismatch";
    const std::string body = methodCall("Start", onInstance);
    EXPECT_EQ(rejection(body, {"Start", "root:X.a=\"1\"", "1.0"}), "answered");
    EXPECT_EQ(rejection(body, {"Start", "/ROOT:x.a=\"1\"", "1.0"}), "answered");
    EXPECT_EQ(rejection(body, {"Start", "root:Y.a=\"1\"", "1.0"}), mismatch);
    EXPECT_EQ(rejection(body, {"Start", "root/cimv2:X.a=\"1\"", "1.0"}), mismatch);
    EXPECT_EQ(rejection(body, {"Start", "root", "1.0"}), mismatch);
    EXPECT_EQ(rejection(body, {"Stop", "root:X.a=\"1\"", "1.0"}), mismatch);
}

} // namespace
} // namespace embedded::cimxml::test
