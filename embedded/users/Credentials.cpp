#include "users/Credentials.h"

#include "limits/Limits.h"
#include "text/Ascii.h"

#include <algorithm>
#include <openssl/evp.h>

namespace embedded::users {
namespace {

constexpr std::string_view scheme = "Basic";

bool isOfBase64(char c) { return text::isLetter(c) || text::isDigit(c) || c == '+' || c == '/'; }

bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }

/// The bytes that `text` stands for; none if it is no Base64, of one line and with its padding.
std::optional<std::string> decoded(std::string_view text) {
    const std::size_t digits = std::min(text.find('='), text.size());
    const std::size_t padding = text.size() - digits;
    if (text.size() % 4 != 0 || padding > 2 ||
        !std::all_of(text.begin(), text.begin() + digits, isOfBase64) ||
        text.find_first_not_of('=', digits) != std::string_view::npos)
        return std::nullopt;
    std::string bytes(text.size() / 4 * 3, '\0');
    EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                    reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<int>(text.size()));
    bytes.resize(bytes.size() - padding);
    return bytes;
}

} // namespace

std::optional<Credentials> basicCredentials(std::string_view field) {
    // What is longer is no user's.
    if (field.size() > 2 * limits::KiB ||
        !text::equalIgnoringCase(field.substr(0, scheme.size()), scheme))
        return std::nullopt;
    field.remove_prefix(std::min(scheme.size(), field.size()));
    const std::string_view encoded = text::trimmed(field);
    if (encoded.empty() || field.front() != ' ')
        return std::nullopt;
    const std::optional<std::string> bytes = decoded(encoded);
    if (!bytes || std::any_of(bytes->begin(), bytes->end(), isControl))
        return std::nullopt;
    const std::size_t colon = bytes->find(':');
    if (colon == std::string::npos)
        return std::nullopt;
    return Credentials{bytes->substr(0, colon), bytes->substr(colon + 1)};
}

} // namespace embedded::users
