#include "users/CredentialCache.h"

#include "limits/Limits.h"

#include <cstring>
#include <new>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <stdexcept>

namespace embedded::users {

/// A context of HMAC with a new key; null if it cannot be had.
Digester::Context Digester::keyedContext() {
    std::array<unsigned char, 32> key{};
    EVP_MAC* const mac = EVP_MAC_fetch(nullptr, "HMAC", nullptr);
    Context context(EVP_MAC_CTX_new(mac));
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

Digester::Digester() : _context(keyedContext()) {
    if (!_context)
        throw std::runtime_error("no key for what is remembered of credentials");
}

Digester::Digest Digester::operator()(const Credentials& credentials) const {
    // Not one for each thread: the C library ends the process when it has no memory to register a
    // thread's destructors.
    const Context own(EVP_MAC_CTX_dup(_context.get()));
    if (!own)
        throw std::bad_alloc();
    // Neither has a NUL.
    std::string text = credentials.name + '\0' + credentials.password;
    Digest digest{};
    std::size_t size = 0;
    const bool made = EVP_MAC_init(own.get(), nullptr, 0, nullptr) == 1 &&
                      EVP_MAC_update(own.get(), reinterpret_cast<const unsigned char*>(text.data()),
                                     text.size()) == 1 &&
                      EVP_MAC_final(own.get(), digest.data(), &size, digest.size()) == 1;
    OPENSSL_cleanse(text.data(), text.size());
    if (!made || size != digest.size())
        throw std::bad_alloc();
    return digest;
}

void Digester::Free::operator()(EVP_MAC_CTX* context) const noexcept { EVP_MAC_CTX_free(context); }

CredentialCache::CredentialCache() : _until(limits::remembered) {}

bool CredentialCache::holds(const Digest& digest, Clock::time_point now) {
    const Clock::time_point* const until = _until.find(digest);
    if (until == nullptr || *until <= now)
        return false;
    add(digest, now);
    return true;
}

void CredentialCache::add(const Digest& digest, Clock::time_point now) {
    _until.touch(digest) = now + limits::rememberedTime;
}

std::size_t CredentialCache::Hash::operator()(const Digest& digest) const noexcept {
    std::size_t hash = 0;
    std::memcpy(&hash, digest.data(), sizeof hash);
    return hash;
}

} // namespace embedded::users
