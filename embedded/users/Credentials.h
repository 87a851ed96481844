// The credentials that a client sends.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct evp_mac_ctx_st; // of OpenSSL

namespace embedded::users {

struct Credentials {
    std::string name;
    std::string password;
};

/// The credentials of an Authorization field "Basic BASE64" (RFC 7617); none if it has another
/// scheme or form, or if name or password have control characters. The name need not be a user's.
std::optional<Credentials> basicCredentials(std::string_view field);

/// Computes digests of credentials: a hash of name and password with a key of its own
/// (HMAC-SHA-256), so that a digest is of no use outside.
///
/// Thread-safety: may be used by several threads at once.
class Digester {
  public:
    /// Throws std::runtime_error if there is no memory, or no random bytes for the key.
    Digester();

    /// Throws std::bad_alloc.
    std::string operator()(const Credentials& credentials) const;

  private:
    // Gets its key once, since that takes several times as long as a hash of some bytes; each hash
    // works on a copy.
    const std::shared_ptr<evp_mac_ctx_st> _context;
};

} // namespace embedded::users
