#include "Requests.h"

#include <gtest/gtest.h>

namespace embedded::cimxml::test {
namespace {

// What stands between `begin` and `end` when `text` is the three in a row.
std::string between(const std::string& text, const std::string& begin, const std::string& end) {
    const bool framed = text.size() >= begin.size() + end.size() &&
                        text.compare(0, begin.size(), begin) == 0 &&
                        text.compare(text.size() - end.size(), end.size(), end) == 0;
    EXPECT_TRUE(framed) << "no " << begin << " around " << text;
    return framed ? text.substr(begin.size(), text.size() - begin.size() - end.size()) : "";
}

} // namespace

std::string request(const std::string& operation, const std::string& parameters) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
           "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
           "<MESSAGE ID=\"1001\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>"
           "<IMETHODCALL NAME=\"" +
           operation +
           "\"><LOCALNAMESPACEPATH>"
           "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"></NAMESPACE>"
           "</LOCALNAMESPACEPATH>" +
           parameters + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

std::string parameter(const std::string& name, const std::string& value) {
    return "<IPARAMVALUE NAME=\"" + name + "\">" + value + "</IPARAMVALUE>";
}

std::string instanceName() {
    return "<INSTANCENAME CLASSNAME=\"X\"><KEYBINDING NAME=\"a\">"
           "<KEYVALUE VALUETYPE=\"string\">1</KEYVALUE></KEYBINDING></INSTANCENAME>";
}

Headers headersFor(const std::string& operation) { return {operation, "root/cimv2", "1.0"}; }

std::string answer(const std::string& body, const Headers& headers, const routing::Caller& caller,
                   routing::CimOperations& operations, routing::Enumerations& enumerations) {
    const auto document = replyTo(body, headers, caller, operations, enumerations);
    std::string reply;
    while (document->next(reply)) {
    }
    return reply;
}

std::string reply(FakeOperations& operations, const std::string& operation,
                  const std::string& parameters) {
    return answer(request(operation, parameters), headersFor(operation), routing::Caller(),
                  operations, operations.enumerations);
}

std::string content(FakeOperations& operations, const std::string& operation,
                    const std::string& parameters) {
    return between(reply(operations, operation, parameters),
                   "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
                   "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
                   "<MESSAGE ID=\"1001\" PROTOCOLVERSION=\"1.0\">\n"
                   "<SIMPLERSP>\n"
                   "<IMETHODRESPONSE NAME=\"" +
                       operation + "\">\n",
                   "</IMETHODRESPONSE>\n</SIMPLERSP>\n</MESSAGE>\n</CIM>\n");
}

std::string returned(FakeOperations& operations, const std::string& operation,
                     const std::string& parameters) {
    return between(content(operations, operation, parameters), "<IRETURNVALUE>\n",
                   "</IRETURNVALUE>\n");
}

std::string recorded(const std::string& operation, const std::string& parameters) {
    FakeOperations operations;
    operations.failure = Pegasus::CIMException(Pegasus::CIM_ERR_FAILED, "not of interest");
    const std::string answered = content(operations, operation, parameters);
    if (operations.calls.size() != 1)
        return "no call, but " + answered;
    return operations.calls[0];
}

std::string rejection(const std::string& body, const Headers& headers) {
    FakeOperations operations;
    operations.failure = Pegasus::CIMException(Pegasus::CIM_ERR_FAILED, "not of interest");
    try {
        answer(body, headers, routing::Caller(), operations, operations.enumerations);
        return "answered";
    } catch (const RequestRejected& rejected) {
        EXPECT_TRUE(operations.calls.empty()) << operations.calls[0];
        EXPECT_STRNE(rejected.what(), "");
        return std::to_string(rejected.status()) + " " + rejected.cimError();
    }
}

std::string errorContent(int code, const std::string& description) {
    return "<ERROR CODE=\"" + std::to_string(code) + "\" DESCRIPTION=\"" + description + "\"/>";
}

} // namespace embedded::cimxml::test
