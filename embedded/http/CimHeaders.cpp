#include "http/CimHeaders.h"

#include "http/Wire.h"

#include <stdexcept>

namespace embedded::http {

using cimxml::RequestRejected;

namespace {

constexpr const char* whitespace = " \t";
constexpr const char* hexadecimal = "0123456789ABCDEF";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isUnreserved(char c) {
    return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '.' ||
           c == '_' || c == '~';
}

// The value of a hexadecimal digit, or -1.
int digitValue(char c) {
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(whitespace);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(whitespace) - first + 1);
}

std::string unquoted(const std::string& text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
        return text.substr(1, text.size() - 2);
    return text;
}

// A field value of the form `value; name=value; ...`, as Content-Type and Man have it.
struct Parametrized {
    std::string value;
    Fields parameters;
};

Parametrized parametrized(const std::string& text) {
    Parametrized result;
    std::size_t end = text.find(';');
    result.value = unquoted(trimmed(text.substr(0, end)));
    while (end != std::string::npos) {
        const std::size_t begin = end + 1;
        end = text.find(';', begin);
        const std::string parameter = text.substr(begin, end - begin);
        const std::size_t equals = parameter.find('=');
        if (equals != std::string::npos)
            result.parameters.emplace_back(trimmed(parameter.substr(0, equals)),
                                           unquoted(trimmed(parameter.substr(equals + 1))));
    }
    return result;
}

RequestRejected mismatch(const std::string& detail) {
    return {400, "header-mismatch", detail};
}

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
        return percentDecoded(*value);
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

cimxml::Headers cimHeaders(const Request& request, const std::string& prefix) {
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

    cimxml::Headers headers;
    headers.method = decodedField("CIMMethod", field("CIMMethod"));
    headers.object = decodedField("CIMObject", field("CIMObject"));
    if (const std::string* version = field("CIMProtocolVersion"))
        headers.protocolVersion = *version;
    return headers;
}

std::string percentDecoded(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        const int high = i + 2 < text.size() ? digitValue(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? digitValue(text[i + 2]) : -1;
        if (high < 0 || low < 0)
            throw std::invalid_argument("not two hexadecimal digits after % in " + text);
        result += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return result;
}

std::string percentEncoded(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (isUnreserved(c)) {
            result += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        result += '%';
        result += hexadecimal[byte / 16];
        result += hexadecimal[byte % 16];
    }
    return result;
}

} // namespace embedded::http
