// A CIM-XML document, with header fields that fit it, against a small server. What it answers is a
// document about that request, and what comes next is answered as ever.
#include "fuzz/Fuzz.h"
#include "fuzz/World.h"

#include "cimxml/Document.h"
#include "cimxml/Message.h"

#include <embedding/XmlWriter.h>

#include <string>
#include <string_view>

namespace {

using namespace embedded::cimxml;
using fuzz::World;

const std::string goodBody =
    R"(<?xml version="1.0" encoding="utf-8" ?>
<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="7" PROTOCOLVERSION="1.0"><SIMPLEREQ>
<IMETHODCALL NAME="GetInstance">
<LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="wire"/></LOCALNAMESPACEPATH>
<IPARAMVALUE NAME="InstanceName"><INSTANCENAME CLASSNAME="WIRE_Thing"><KEYBINDING NAME="Name">
<KEYVALUE VALUETYPE="string">b</KEYVALUE></KEYBINDING></INSTANCENAME></IPARAMVALUE>
</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)";

// What CIMMethod and CIMObject say about a client's own document.
Headers headersFor(const Element& message) {
    const Element call = message.child("SIMPLEREQ").child();
    Headers headers;
    headers.method = call.attribute("NAME").value;
    headers.protocolVersion = message.attribute("PROTOCOLVERSION").value;
    Element spaces = call.child("LOCALNAMESPACEPATH");
    std::string className;
    for (const char* form : {"LOCALCLASSPATH", "LOCALINSTANCEPATH"}) {
        if (const Element path = call.child(form)) {
            spaces = path.child("LOCALNAMESPACEPATH");
            className = path.child("CLASSNAME").attribute("NAME").value;
            className += path.child("INSTANCENAME").attribute("CLASSNAME").value;
        }
    }
    for (const Element& space : spaces.children("NAMESPACE")) {
        headers.object += headers.object.empty() ? "" : "/";
        headers.object += space.attribute("NAME").value;
    }
    if (call.name() == "METHODCALL")
        headers.object += ":" + className;
    return headers;
}

// Whether an element named so, with an attribute `name` of that `value`, is in `xml`.
bool has(const std::string& xml, const char* element, const char* name, std::string_view value) {
    std::string escaped;
    Pegasus::embedding::appendEscaped(escaped, value);
    const std::string tag = std::string("<") + element;
    return xml.find(tag + " " + name + "=\"" + escaped + "\"") != std::string::npos;
}

// `request` is what `reply` answers.
void checkReply(const std::string& reply, const Element& request) {
    fuzz::require(fuzz::isWellFormed(reply), "a reply is XML", reply);
    fuzz::require(has(reply, "MESSAGE", "ID", request.attribute("ID").value),
                  "a reply has the ID of its request", reply);
    const Element call = request.child("SIMPLEREQ").child();
    const char* const element = call.name() == "METHODCALL" ? "METHODRESPONSE" : "IMETHODRESPONSE";
    fuzz::require(has(reply, element, "NAME", call.attribute("NAME").value),
                  "a reply names the method of its request", reply);
}

/// Throws RequestRejected.
std::string answered(const std::string& body, World& world) {
    const Document request(body);
    const Element message = request.root().child("MESSAGE");
    const auto document = replyTo(body, headersFor(message), embedded::routing::Caller(), world,
                                  world.enumerations());
    std::string reply;
    while (document->next(reply)) {
    }
    checkReply(reply, message);
    return reply;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static World world;
    static const std::string goodReply = answered(goodBody, world);
    try {
        answered(std::string(data, data + size), world);
    } catch (const RequestRejected&) {
    }
    world.restore();
    fuzz::require(answered(goodBody, world) == goodReply, "the next request is answered as ever");
    return 0;
}
