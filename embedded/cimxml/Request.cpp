#include "cimxml/Request.h"

#include "cimxml/ElementRules.h"
#include "cimxml/Objects.h"
#include "embedding/Text.h"

#include <string_view>

namespace embedded::cimxml {

using Pegasus::String;
using namespace Pegasus::embedding;

namespace {

[[noreturn]] void rejectMismatch(const std::string& detail) {
    throw RequestRejected(400, "header-mismatch", detail);
}

// "<major>.<digits>": a minor version changes nothing that a reader could not take.
bool hasMajor(std::string_view version, std::string_view major) {
    return version.size() > major.size() + 1 && version.substr(0, major.size()) == major &&
           version[major.size()] == '.' &&
           version.find_first_not_of("0123456789", major.size() + 1) == std::string_view::npos;
}

// A message of another version may have elements that are unknown here; what it is about must be
// said all the same, so the versions come before the element rules.
void checkVersions(const Element& cim) {
    const Attribute cimVersion = cim.attribute("CIMVERSION");
    const Attribute dtdVersion = cim.attribute("DTDVERSION");
    if (cimVersion && !hasMajor(cimVersion.value, "2"))
        throw RequestRejected(501, "unsupported-cim-version", std::string(cimVersion.value));
    if (dtdVersion && !hasMajor(dtdVersion.value, "2"))
        throw RequestRejected(501, "unsupported-dtd-version", std::string(dtdVersion.value));
}

void checkProtocol(const Element& message, const Headers& headers) {
    const Attribute version = message.attribute("PROTOCOLVERSION");
    if (!version)
        return; // the element rules say so
    if (version.value != headers.protocolVersion)
        rejectMismatch("PROTOCOLVERSION \"" + std::string(version.value) +
                       "\", CIMProtocolVersion \"" + headers.protocolVersion + "\"");
    if (!hasMajor(version.value, "1"))
        throw RequestRejected(501, "unsupported-protocol-version", std::string(version.value));
    if (message.child("MULTIREQ"))
        rejectMismatch("MULTIREQ without CIMBatch");
}

bool equalNoCase(const std::string& a, const std::string& b) {
    return String::equalNoCase(fromUtf8(a), fromUtf8(b));
}

// Namespace and class are compared. Keys are not: how a client spells them in the header and in
// the document may well differ, and the document is what counts.
std::string targetOf(const Request& request) {
    std::string target = utf8(request.nameSpace);
    if (!request.isIntrinsic())
        target += ':' + utf8(request.className);
    return target;
}

void checkHeaders(const Headers& headers, const Request& request) {
    if (!equalNoCase(headers.method, request.method))
        rejectMismatch("call of " + request.method + ", CIMMethod \"" + headers.method + "\"");
    std::string object = headers.object;
    object.erase(0, object.substr(0, 1) == "/" ? 1 : 0);
    if (!request.isIntrinsic())
        object.resize(std::min(object.find('.'), object.size()));
    if (!equalNoCase(object, targetOf(request)))
        rejectMismatch("call to " + targetOf(request) + ", CIMObject \"" + headers.object + "\"");
}

void readTarget(Request& request) {
    if (const Element nameSpace = request.call.child("LOCALNAMESPACEPATH")) {
        request.nameSpace = readNamespace(nameSpace);
        return;
    }
    const Element classPath = request.call.child("LOCALCLASSPATH");
    const Element path = classPath ? classPath : request.call.child("LOCALINSTANCEPATH");
    request.nameSpace = readNamespace(path.child("LOCALNAMESPACEPATH"));
    request.className = classPath ? readName(path.child("CLASSNAME").attribute("NAME"))
                                  : readName(path.child("INSTANCENAME").attribute("CLASSNAME"));
}

} // namespace

Request::Request(const std::string& body, const Headers& headers) : document(body) {
    const Element cim = document.root();
    if (cim.name() != "CIM")
        rejectNotValid("root element " + std::string(cim.name()));
    checkVersions(cim);
    const Element message = cim.child("MESSAGE");
    checkProtocol(message, headers);
    checkElement(cim);

    const Element simple = message.child("SIMPLEREQ");
    const Element intrinsic = simple.child("IMETHODCALL");
    call = intrinsic ? intrinsic : simple.child("METHODCALL");
    messageId = message.attribute("ID").value;
    method = call.attribute("NAME").value;
    readName(call.attribute("NAME"));
    readTarget(*this);
    checkHeaders(headers, *this);
}

} // namespace embedded::cimxml
