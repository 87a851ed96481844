// Remembers verified credentials, so that the hash of a password, which is slow on purpose, is not
// computed for each request.
#pragma once

#include "users/Credentials.h"
#include "users/LruCache.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>

struct evp_mac_ctx_st; // of OpenSSL

namespace embedded::users {

/// Computes digests of credentials: a hash of name and password with a key of its own
/// (HMAC-SHA-256), so that a digest is of no use outside.
///
/// Thread-safety: may be used by several threads at once.
class Digester {
  public:
    using Digest = std::array<unsigned char, 32>;

    /// Throws std::runtime_error if there is no memory, or no random bytes for the key.
    Digester();

    /// Throws std::bad_alloc.
    Digest operator()(const Credentials& credentials) const;

  private:
    struct Free {
        void operator()(evp_mac_ctx_st* context) const noexcept;
    };

    using Context = std::unique_ptr<evp_mac_ctx_st, Free>;

    static Context keyedContext();

    // Gets its key once, since that takes several times as long as a hash of some bytes; each hash
    // works on a copy.
    const Context _context;
};

/// Digests of verified credentials. A digest that is not asked for expires after a while.
///
/// Thread-safety: none.
class CredentialCache {
  public:
    using Clock = std::chrono::steady_clock;
    using Digest = Digester::Digest;
    CredentialCache();

    bool holds(const Digest& digest, Clock::time_point now);
    void add(const Digest& digest, Clock::time_point now);
    void clear() noexcept { _until.clear(); }

  private:
    struct Hash {
        std::size_t operator()(const Digest& digest) const noexcept;
    };

    LruCache<Digest, Clock::time_point, Hash> _until;
};

} // namespace embedded::users
