#include "http/Framing.h"

#include "text/Ascii.h"

#include <algorithm>

namespace embedded::http {
namespace {

Refusal badRequest(const std::string& why) { return {400, "Bad Request", why}; }

} // namespace

std::optional<Refusal> framingFault(const Request& request) {
    const auto hosts =
        std::count_if(request.fields.begin(), request.fields.end(), [](const auto& field) {
            return text::equalIgnoringCase(field.first, "Host");
        });
    if (hosts > 1)
        return badRequest("more than one Host field");
    if (!findField(request.fields, "Transfer-Encoding"))
        return std::nullopt;
    if (request.version < 11)
        return badRequest("Transfer-Encoding in a request of HTTP/1.0");
    if (findField(request.fields, "Content-Length"))
        return badRequest("Transfer-Encoding and Content-Length");
    const std::vector<std::string> codings = listOf(request.fields, "Transfer-Encoding");
    const auto isChunked = [](const std::string& coding) {
        return text::equalIgnoringCase(coding, "chunked");
    };
    if (codings.empty() || !isChunked(codings.back()))
        return badRequest(
            "the last transfer coding is not chunked, so nothing says where the body ends");
    if (std::count_if(codings.begin(), codings.end(), isChunked) > 1)
        return badRequest("chunked twice");
    if (codings.size() > 1)
        return Refusal{501, "Not Implemented", "unknown transfer coding: " + codings.front()};
    return std::nullopt;
}

} // namespace embedded::http
