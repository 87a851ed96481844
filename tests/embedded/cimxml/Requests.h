// Requests as clients send them, and what comes back.
#pragma once

#include "FakeOperations.h"

#include "cimxml/Message.h"

#include <string>

namespace embedded::cimxml::test {

/// A request document for an intrinsic operation in root/cimv2. `parameters`: IPARAMVALUEs.
std::string request(const std::string& operation, const std::string& parameters);
/// An IPARAMVALUE.
std::string parameter(const std::string& name, const std::string& value);
/// An INSTANCENAME of class X with one key a="1".
std::string instanceName();
/// What a client's CIMMethod and CIMObject would be for request().
Headers headersFor(const std::string& operation);

/// All of the reply document to `body`, see replyTo().
std::string answer(const std::string& body, const Headers& headers, const routing::Caller& caller,
                   routing::CimOperations& operations, routing::Enumerations& enumerations);
/// The whole reply document to a call of `operation` in root/cimv2.
std::string reply(FakeOperations& operations, const std::string& operation,
                  const std::string& parameters);
/// The same without the envelope: what stands in the IMETHODRESPONSE.
std::string content(FakeOperations& operations, const std::string& operation,
                    const std::string& parameters);
/// What stands in the IRETURNVALUE; fails the test when there is none.
std::string returned(FakeOperations& operations, const std::string& operation,
                     const std::string& parameters);
/// The one line that the call left in the fake.
std::string recorded(const std::string& operation, const std::string& parameters);
/// "<status> <CIMError>" of the rejection of `body`, or "answered".
std::string rejection(const std::string& body, const Headers& headers);

/// The content of a response with an ERROR.
std::string errorContent(int code, const std::string& description);

} // namespace embedded::cimxml::test
