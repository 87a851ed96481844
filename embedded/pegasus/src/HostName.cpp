#include "ObjectPathReps.h"
#include "text/Ascii.h"

#include <arpa/inet.h>
#include <net/if.h>

#include <algorithm>
#include <string>

namespace Pegasus {

namespace {

bool isNumber(const std::string& text, std::size_t maximumSize, unsigned long maximum) {
    return !text.empty() && text.size() <= maximumSize &&
           std::all_of(
               text.begin(), text.end(),
               [](char c) { return embedded::text::isDigit(static_cast<Uint16>(c)); }) &&
           std::stoul(text) <= maximum;
}

/// The port may be missing behind its colon (RFC 3986, 3.2.3).
bool isPort(const std::string& text) {
    const std::size_t leadingZeros = std::min(text.find_first_not_of('0'), text.size());
    const std::string digits = text.substr(leadingZeros);
    return digits.empty() || isNumber(digits, 5, 65535);
}

bool isPortSuffix(const std::string& text) {
    return text.empty() || (text[0] == ':' && isPort(text.substr(1)));
}

bool isLabel(const std::string& label) {
    if (label.empty() || label[0] == '-')
        return false;
    return std::all_of(label.begin(), label.end(), [](char c) {
        const Uint16 unit = static_cast<unsigned char>(c);
        return embedded::text::isLetter(unit) || embedded::text::isDigit(unit) || unit == '-' ||
               unit == '_';
    });
}

/// A name whose last label is a number can only be an IPv4 address (RFC 1123, 2.1).
bool isNameOrIPv4(const std::string& name) {
    std::size_t labels = 0;
    bool octetsOnly = true;
    for (std::size_t begin = 0;; ++labels) {
        const std::size_t dot = name.find('.', begin);
        const std::string label = name.substr(begin, dot - begin);
        if (!isLabel(label))
            return false;
        octetsOnly = octetsOnly && isNumber(label, 3, 255);
        if (dot == std::string::npos) {
            const bool lastIsNumber = label.find_first_not_of("0123456789") == std::string::npos;
            return !lastIsNumber || (octetsOnly && labels == 3);
        }
        begin = dot + 1;
    }
}

bool isIPv6(const std::string& address) {
    const std::size_t percent = address.find('%');
    in6_addr parsed;
    if (inet_pton(AF_INET6, address.substr(0, percent).c_str(), &parsed) != 1)
        return false;
    // A link-local address says something only together with an interface of this machine.
    if (!IN6_IS_ADDR_LINKLOCAL(&parsed))
        return percent == std::string::npos;
    return percent != std::string::npos && if_nametoindex(address.c_str() + percent + 1) != 0;
}

} // namespace

bool isHost(const String& host) {
    std::string text;
    for (Uint32 i = 0; i < host.size(); ++i) {
        if (Uint16(host[i]) == 0 || host[i] > 0x7F)
            return false;
        text += static_cast<char>(Uint16(host[i]));
    }
    if (!text.empty() && text[0] == '[') {
        const std::size_t closing = text.find(']');
        return closing != std::string::npos && isIPv6(text.substr(1, closing - 1)) &&
               isPortSuffix(text.substr(closing + 1));
    }
    const std::size_t colon = std::min(text.find(':'), text.size());
    return isNameOrIPv4(text.substr(0, colon)) && isPortSuffix(text.substr(colon));
}

} // namespace Pegasus
