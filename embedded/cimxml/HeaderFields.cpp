#include "cimxml/HeaderFields.h"

#include "text/Ascii.h"
#include "text/Utf8.h"

#include <stdexcept>

namespace embedded::cimxml {

using http::findField;
using http::parametrized;
using http::Parametrized;
using http::Request;
using text::equalIgnoringCase;
using text::isDigit;

namespace {

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

} // namespace

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

} // namespace embedded::cimxml
