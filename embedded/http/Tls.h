// TLS for the clients of a listener: which certificate is shown, and whose are taken.
#pragma once

#include "threads/Locks.h"

#include <filesystem>
#include <memory>
#include <string>

struct ssl_ctx_st; // OpenSSL's SSL_CTX and SSL
struct ssl_st;

namespace embedded::http {

/// TLS 1.2 and newer, with the ciphers that OpenSSL has by default.
///
/// Thread-safety: all functions may be called from several threads at once.
class TlsContext {
  public:
    /// All in PEM. A key must not be encrypted: nobody is there to be asked.
    struct Files {
        std::filesystem::path certificate; ///< the server's, then those that lead to its root
        std::filesystem::path key;
        /// The roots of clients' certificates. Clients are asked for one then, and need not have
        /// one; one that they have must be good. Empty: nobody is asked.
        std::filesystem::path clientCa;
    };

    /// Throws std::runtime_error that says which file cannot be used, and why.
    explicit TlsContext(Files files);

    /// Reads the files again, for connections that come from now on, tickets of former ones
    /// included. Throws as the constructor does; all is as before then.
    void reload();
    /// For one connection that comes now.
    std::shared_ptr<ssl_ctx_st> current() const;

  private:
    const Files _files;
    mutable threads::Mutex _mutex;
    std::shared_ptr<ssl_ctx_st> _current GUARDED_BY(_mutex);
};

/// The common name (CN) in the subject of the certificate that the client of `connection` has
/// proved to be its own, after the handshake; empty: it has none, or more than one name, or one
/// that is not one line of UTF-8.
std::string certificateName(const ssl_st* connection);

/// What OpenSSL says of the oldest error of this thread; forgets all of them.
std::string tlsError();

} // namespace embedded::http
