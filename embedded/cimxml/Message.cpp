#include "cimxml/Message.h"

#include "cimxml/Operations.h"
#include "cimxml/Request.h"
#include "cimxml/Text.h"
#include "cimxml/Writer.h"

#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Exception.h>

namespace embedded::cimxml {
namespace {

// DESCRIPTION starts with the name of the status; without a message it is the name alone.
std::string error(Pegasus::CIMStatusCode code, const Pegasus::String& message) {
    Pegasus::String description(Pegasus::cimStatusCodeToString(code));
    if (message.size() != 0) {
        description.append(": ").append(message);
    }
    std::string out = "<ERROR CODE=\"" + std::to_string(code) + "\" DESCRIPTION=\"";
    appendEscaped(out, description);
    return out += "\"/>"; // no line feed here
}

std::string reply(const Request& request, const std::string& content) {
    const std::string response = request.isIntrinsic() ? "IMETHODRESPONSE" : "METHODRESPONSE";
    std::string out = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
                      "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
                      "<MESSAGE";
    appendAttribute(out, "ID", fromUtf8(request.messageId));
    out += " PROTOCOLVERSION=\"1.0\">\n"
           "<SIMPLERSP>\n";
    out += '<' + response;
    appendAttribute(out, "NAME", fromUtf8(request.method));
    out += ">\n" + content + "</" + response + ">\n";
    out += "</SIMPLERSP>\n"
           "</MESSAGE>\n"
           "</CIM>\n";
    return out;
}

std::string contentFor(const Request& request, const host::Caller& caller,
                       host::CimOperations& operations) {
    try {
        if (!request.isIntrinsic()) {
            answerExtrinsic(request, caller, operations);
        }
        return answerIntrinsic(request, caller, operations);
    } catch (const Pegasus::CIMException& exception) {
        return error(exception.getCode(), exception.getMessage());
    } catch (const Pegasus::Exception& exception) {
        return error(Pegasus::CIM_ERR_FAILED, exception.getMessage());
    }
}

} // namespace

std::string answer(const std::string& body, const Headers& headers, const host::Caller& caller,
                   host::CimOperations& operations) {
    Request request;
    readRequest(body, headers, request);
    return reply(request, contentFor(request, caller, operations));
}

} // namespace embedded::cimxml
