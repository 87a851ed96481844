// A request's header fields with its document: a line with verb and target, a line for each field,
// an empty line, the body. The reply can be sent and says what went wrong in words that clients
// know; the case of names and the form of the fields of M-POST make no difference.
#include "fuzz/Fuzz.h"
#include "fuzz/World.h"

#include "cimxml/Exchange.h"
#include "http/Message.h"
#include "text/Ascii.h"

#include <algorithm>
#include <array>
#include <regex>
#include <string>
#include <string_view>

namespace {

using namespace embedded::http;
using embedded::text::equalIgnoringCase;
using embedded::text::trimmed;
using fuzz::require;

std::string takeLine(std::string_view& left) {
    const std::size_t end = std::min(left.find('\n'), left.size());
    const std::string line(trimmed(left.substr(0, end)));
    left.remove_prefix(std::min(end + 1, left.size()));
    return line;
}

Request requestOf(std::string_view left) {
    Request request;
    const std::string first = takeLine(left);
    const std::size_t blank = first.find(' ');
    request.verb = first.substr(0, blank);
    request.target = blank == std::string::npos ? "" : first.substr(blank + 1);
    request.version = first.find("HTTP/1.0") == std::string::npos ? 11 : 10;
    for (std::string line = takeLine(left); !line.empty(); line = takeLine(left)) {
        const std::size_t colon = std::min(line.find(':'), line.size());
        request.fields.emplace_back(line.substr(0, colon),
                                    trimmed(line.substr(std::min(colon + 1, line.size()))));
    }
    request.body = left;
    return request;
}

std::string fieldOf(const Reply& reply, const char* name) {
    const std::string* const value = findField(reply.fields, name);
    return value ? *value : "";
}

// Status, error and document: what does not depend on the form of the request.
std::string essence(const Reply& reply) {
    // The context of an enumeration is never the same.
    static const std::regex context("(\"EnumerationContext\"[^>]*>\n<VALUE>)[0-9a-f]{32}");
    return std::to_string(reply.status) + " " + fieldOf(reply, "CIMError") + "\n" +
           std::regex_replace(reply.body, context, "$1");
}

// CIMError's values, DSP0200 clause 6.3.3.2.
constexpr std::array<std::string_view, 10> errors = {"",
                                                     "unsupported-protocol-version",
                                                     "multiple-requests-unsupported",
                                                     "unsupported-cim-version",
                                                     "unsupported-dtd-version",
                                                     "request-not-valid",
                                                     "request-not-well-formed",
                                                     "request-not-loosely-valid",
                                                     "header-mismatch",
                                                     "unsupported-operation"};

Reply replyTo(Request request, fuzz::World& world) {
    world.restore();
    const bool extended = request.verb == "M-POST";
    Answer answer = embedded::cimxml::exchange(std::move(request), embedded::routing::Caller(),
                                               world, world.enumerations());
    require(std::get_if<Reply>(&answer) != nullptr, "nothing here takes its time");
    Reply reply = std::get<Reply>(std::move(answer));
    require(!wireHeader(reply, Persistence::Silent).empty(), "a reply can be sent");
    const std::string seen = essence(reply);
    require(std::find(errors.begin(), errors.end(), fieldOf(reply, "CIMError")) != errors.end(),
            "an error is one that clients know", seen);
    percentDecoded(fieldOf(reply, "PGErrorDetail"));
    const std::string man = fieldOf(reply, "Man");
    require(man.empty() == (reply.status != 200 || !extended), "M-POST is answered in kind", seen);
    const std::string prefix = man.empty() ? "" : man.substr(man.size() - 2) + "-";
    require(reply.status != 200 ||
                fieldOf(reply, (prefix + "CIMOperation").c_str()) == "MethodResponse",
            "a reply says that it is one", seen);
    return reply;
}

Request withOtherNames(Request request) {
    for (auto& field : request.fields)
        for (char& c : field.first)
            c = embedded::text::isLower(c) ? embedded::text::upper(c) : embedded::text::lower(c);
    return request;
}

/// The M-POST that says what this POST says.
Request extended(const Request& post) {
    constexpr std::array<std::string_view, 5> extension = {"CIMOperation", "CIMMethod", "CIMObject",
                                                           "CIMProtocolVersion", "CIMBatch"};
    Request request = post;
    request.verb = "M-POST";
    for (auto& field : request.fields)
        if (std::any_of(extension.begin(), extension.end(), [&](std::string_view name) {
                return equalIgnoringCase(field.first, name);
            }))
            field.first.insert(0, "73-");
    request.fields.insert(request.fields.begin(),
                          {"Man", "http://www.dmtf.org/cim/mapping/http/v1.0; ns=73"});
    return request;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::World world;
    const std::string bytes(data, data + size);
    const Request request = requestOf(bytes);
    const Reply reply = replyTo(request, world);
    require(essence(replyTo(withOtherNames(request), world)) == essence(reply),
            "the names of fields have no case", essence(reply));
    if (request.verb == "POST" && bytes.find("73-") == std::string::npos) {
        const Reply other = replyTo(extended(request), world);
        require(essence(other) == essence(reply), "M-POST asks what POST asks",
                essence(reply) + "\n" + essence(other));
    }
    return 0;
}
