#include "users/Credentials.h"

#include "limits/Limits.h"
#include "text/Ascii.h"

#include <algorithm>
#include <array>
#include <new>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <stdexcept>

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

using Context = std::shared_ptr<EVP_MAC_CTX>;

/// A context of HMAC with a new key; null if it cannot be had.
Context keyedContext() {
    std::array<unsigned char, 32> key{};
    EVP_MAC* const mac = EVP_MAC_fetch(nullptr, "HMAC", nullptr);
    Context context(EVP_MAC_CTX_new(mac), EVP_MAC_CTX_free);
    EVP_MAC_free(mac); // the context has it, too
    std::string hash = "SHA256";
    const std::array<OSSL_PARAM, 2> parameters{
        OSSL_PARAM_construct_utf8_string("digest", hash.data(), 0), OSSL_PARAM_construct_end()};
    if (context != nullptr &&
        (RAND_bytes(key.data(), static_cast<int>(key.size())) != 1 ||
         EVP_MAC_init(context.get(), key.data(), key.size(), parameters.data()) != 1))
        context.reset();
    OPENSSL_cleanse(key.data(), key.size());
    return context;
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

Digester::Digester() : _context(keyedContext()) {
    if (!_context)
        throw std::runtime_error("no key for what is remembered of credentials");
}

std::string Digester::operator()(const Credentials& credentials) const {
    // Not one for each thread: the C library ends the process when it has no memory to register a
    // thread's destructors.
    const Context own(EVP_MAC_CTX_dup(_context.get()), EVP_MAC_CTX_free);
    if (!own)
        throw std::bad_alloc();
    std::string digest(EVP_MAC_CTX_get_mac_size(own.get()), '\0');
    // Neither has a NUL.
    std::string text = credentials.name + '\0' + credentials.password;
    std::size_t size = 0;
    const bool made = EVP_MAC_init(own.get(), nullptr, 0, nullptr) == 1 &&
                      EVP_MAC_update(own.get(), reinterpret_cast<const unsigned char*>(text.data()),
                                     text.size()) == 1 &&
                      EVP_MAC_final(own.get(), reinterpret_cast<unsigned char*>(digest.data()),
                                    &size, digest.size()) == 1;
    OPENSSL_cleanse(text.data(), text.size());
    if (!made || size != digest.size())
        throw std::bad_alloc();
    return digest;
}

} // namespace embedded::users
