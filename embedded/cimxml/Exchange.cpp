#include "cimxml/Exchange.h"

#include "http/Message.h"
#include "limits/Limits.h"
#include "routing/Values.h"
#include "text/Ascii.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace embedded::cimxml {

using http::Fields;
using http::findField;
using http::parametrized;
using http::Parametrized;
using http::Reply;
using http::Request;
using text::equalIgnoringCase;
using text::isDigit;

namespace {

constexpr const char* verbPost = "POST";
constexpr const char* verbExtensionPost = "M-POST";
// The name of the HTTP extension that CIM-XML is (DSP0200 clause 6.2.2).
constexpr const char* extensionName = "http://www.dmtf.org/cim/mapping/http/v1.0";

// Of 400 or 501.
const char* reason(unsigned status) { return status == 501 ? "Not Implemented" : "Bad Request"; }

// A detail may quote the request. Cut between characters.
std::string shortened(const std::string& detail) {
    if (detail.size() <= limits::errorDetail)
        return detail;
    std::size_t end = limits::errorDetail;
    // Not tested: no detail begins with bytes of the client's, which might all be inside a
    // character.
    while (end > 0 && (static_cast<unsigned char>(detail[end]) & 0xC0U) == 0x80U)
        --end;
    return detail.substr(0, end) + "...";
}

// What clients have learnt to read: a CIMError that names the kind of error, and a text for
// people, escaped so that it stays one word.
Reply errorReply(unsigned status, const std::string& cimError, const std::string& detail) {
    Fields fields;
    if (!cimError.empty())
        fields.emplace_back("CIMError", cimError);
    if (!detail.empty())
        fields.emplace_back("PGErrorDetail", http::percentEncoded(shortened(detail)));
    return Reply{status, reason(status), std::move(fields)};
}

// Ten digits with leading zeros: the length of the header does not depend on the body's.
std::string paddedLength(std::size_t length) {
    const std::string digits = std::to_string(length);
    // Not tested: a document of 10 GB has no length, it goes out in pieces.
    return std::string(digits.size() < 10 ? 10 - digits.size() : 0, '0') + digits;
}

Reply replyOf(const std::shared_ptr<ReplyDocument>& document, bool extended,
              const std::string& prefix) {
    Reply reply;
    document->next(reply.body);
    reply.fields = {{"Content-Type", "application/xml; charset=utf-8"}};
    if (document->ended())
        reply.fields.emplace_back("content-length", paddedLength(reply.body.size()));
    else
        reply.rest = [document](std::string& out) { return document->next(out); };
    if (extended) {
        // An extended reply names its own prefix even if the request did without one.
        const std::string own = prefix.empty() ? "01" : prefix;
        reply.fields.emplace_back("Ext", "");
        reply.fields.emplace_back("Cache-Control", "no-cache");
        reply.fields.emplace_back("Man", std::string(extensionName) + "; ns=" + own);
        reply.fields.emplace_back(own + "-CIMOperation", "MethodResponse");
    } else {
        reply.fields.emplace_back("CIMOperation", "MethodResponse");
    }
    return reply;
}

// There is nothing to be had by other verbs. Who comes with a browser is told what this is.
Reply otherVerbReply(const std::string& verb) {
    if (verb == "GET" || verb == "HEAD") {
        Reply reply{404, "Not Found", {{"Content-Type", "text/plain; charset=utf-8"}}};
        reply.body = "This is a CIM server. It answers CIM-XML requests, sent with POST.\n";
        return reply;
    }
    static const std::array<const char*, 6> known{"PUT",     "DELETE", "CONNECT",
                                                  "OPTIONS", "TRACE",  "PATCH"};
    if (std::find(known.begin(), known.end(), verb) != known.end())
        return Reply{405, "Method Not Allowed", {{"Allow", "POST, M-POST"}}};
    return Reply{501, reason(501)};
}

RequestRejected mismatch(const std::string& detail) { return {400, "header-mismatch", detail}; }

void checkContentType(const Request& request) {
    const std::string* field = findField(request.fields, "Content-Type");
    if (!field)
        throw RequestRejected(400, "", "Content-Type is missing; application/xml is expected");
    const Parametrized type = parametrized(*field);
    if (!equalIgnoringCase(type.value, "application/xml") &&
        !equalIgnoringCase(type.value, "text/xml"))
        throw RequestRejected(400, "",
                              "Content-Type is not application/xml or text/xml: " + *field);
    const std::string* charset = findField(type.parameters, "charset");
    if (charset && !equalIgnoringCase(*charset, "utf-8"))
        throw RequestRejected(400, "", "charset is not utf-8: " + *charset);
}

std::string decodedField(const std::string& name, const std::string* value) {
    if (!value)
        throw mismatch(name + " is missing");
    try {
        std::string decoded = http::percentDecoded(*value);
        if (text::findInvalidUtf8(decoded) != std::string::npos)
            throw std::invalid_argument("no UTF-8: " + *value);
        return decoded;
    } catch (const std::invalid_argument& error) {
        throw mismatch(name + ": " + error.what());
    }
}

// The extension that an M-POST request declares in Man (RFC 2774 clause 4): the two digits that its
// field names begin with, or nothing.
std::string extensionPrefix(const Request& request) {
    const std::string* man = findField(request.fields, "Man");
    if (!man)
        return {};
    const Parametrized extension = parametrized(*man);
    const std::string* prefix = findField(extension.parameters, "ns");
    if (!prefix)
        return {};
    if (prefix->size() != 2 || !isDigit((*prefix)[0]) || !isDigit((*prefix)[1]))
        throw RequestRejected(400, "", "the prefix in Man is not two digits: " + *man);
    return *prefix;
}

// What the request's fields say about the operation. A field is looked for with `prefix`, and then
// without.
Headers cimHeaders(const Request& request, const std::string& prefix) {
    // Some clients declare a prefix and then do without it, in all fields or in some.
    const auto field = [&](const std::string& name) {
        const std::string* extended =
            prefix.empty() ? nullptr : findField(request.fields, prefix + "-" + name);
        return extended ? extended : findField(request.fields, name);
    };
    if (request.version >= 11 && !findField(request.fields, "Host"))
        throw RequestRejected(400, "", "Host is missing");
    const std::string* operation = field("CIMOperation");
    if (!operation)
        throw RequestRejected(400, "", "");
    checkContentType(request);
    if (field("CIMBatch"))
        throw RequestRejected(501, "multiple-requests-unsupported", "");
    if (!equalIgnoringCase(*operation, "MethodCall"))
        throw RequestRejected(400, "unsupported-operation", "CIMOperation is " + *operation);

    Headers headers;
    headers.method = decodedField("CIMMethod", field("CIMMethod"));
    headers.object = decodedField("CIMObject", field("CIMObject"));
    if (const std::string* version = field("CIMProtocolVersion"))
        headers.protocolVersion = *version;
    return headers;
}

} // namespace

http::Answer exchange(const Request& request, const DocumentAnswer& answer) {
    const bool extended = request.verb == verbExtensionPost;
    if (!extended && request.verb != verbPost)
        return otherVerbReply(request.verb);
    try {
        const std::string prefix = extended ? extensionPrefix(request) : std::string();
        const std::shared_ptr<ReplyDocument> document =
            answer(request.body, cimHeaders(request, prefix));
        const auto reply = [=] { return replyOf(document, extended, prefix); };
        if (document->modules().empty())
            return reply();
        std::vector<unsigned> lanes;
        for (const routing::Module* module : document->modules())
            lanes.push_back(module->number);
        const std::string names = routing::joined(
            document->modules(), [](const auto* module) { return routing::utf8(module->name); },
            " or ");
        return http::Work(reply, std::move(lanes), [=] {
            document->giveUp("Provider module " + names + " is not answering.");
            return reply();
        });
    } catch (const RequestRejected& rejected) {
        return errorReply(rejected.status(), rejected.cimError(), rejected.what());
    }
}

http::Answer exchange(Request&& request, const routing::Caller& caller,
                      routing::CimOperations& operations, routing::Enumerations& enumerations,
                      std::vector<unsigned> longReading) {
    const auto answer = [caller, &operations, &enumerations](const Request& read) {
        return exchange(read, [&](const std::string& body, const Headers& headers) {
            return replyTo(body, headers, caller, operations, enumerations);
        });
    };
    if (request.body.size() <= limits::shortRequest)
        return answer(request);
    // What a long request asks for is more work, too, and stays in the lanes of its like.
    auto read = [answer, longReading, request = std::move(request)] {
        http::Answer answered = answer(request);
        if (http::Work* more = std::get_if<http::Work>(&answered))
            more->lanes.insert(more->lanes.end(), longReading.begin(), longReading.end());
        return answered;
    };
    return http::Work(std::move(read), std::move(longReading));
}

} // namespace embedded::cimxml
