// TLS for the clients of a listener: the server's certificate, and the roots of its clients'.
#pragma once

#include "threads/Locks.h"

#include <filesystem>
#include <memory>
#include <string>

struct ssl_ctx_st; // OpenSSL's SSL_CTX

namespace embedded::http {

/// TLS 1.2 and newer, with the ciphers that OpenSSL has by default.
///
/// Thread-safety: all functions may be called from several threads at once.
class TlsContext {
  public:
    /// All in PEM. The key must not be encrypted, since the server cannot ask for a password.
    struct Files {
        std::filesystem::path certificate; ///< the server's, then those that lead to its root
        std::filesystem::path key;
        /// The roots of clients' certificates. The server asks each client for a certificate, which
        /// must be valid if the client has one. Empty: the server does not ask.
        std::filesystem::path clientCa;
    };

    /// Throws std::runtime_error that says which file cannot be used, and why.
    explicit TlsContext(Files files);

    /// Reads the files again, for all later connections, also those that resume an earlier session.
    /// Throws as the constructor; nothing changes then.
    void reload();
    /// For a connection that is made now.
    std::shared_ptr<ssl_ctx_st> current() const;

  private:
    const Files _files;
    mutable threads::Mutex _mutex;
    std::shared_ptr<ssl_ctx_st> _current GUARDED_BY(_mutex);
};

/// OpenSSL's text for the oldest error of this thread; clears all of them.
std::string tlsError();

} // namespace embedded::http
