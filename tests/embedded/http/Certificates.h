// Certificates for tests, good and bad, and the TLS that is made of them.
#pragma once

#include "http/Tls.h"

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace embedded::http::test {

/// Whether the tests' clients and servers speak TLS where a test does not say: the environment has
/// HTTP_TEST_TLS.
bool everythingOverTls();

struct PemPair {
    std::string certificate;
    std::string key;
};

/// What is said in a certificate that has signed itself. Beside it, it is for localhost.
struct Said {
    std::vector<std::string> commonNames = {"alice"};
    int commonNameType = 0x1000; ///< as OpenSSL has it; MBSTRING_UTF8
    long validFrom = -3600;      ///< seconds from now
    long validTo = 3600;
    std::size_t padding = 0; ///< bytes in an extension that nobody knows
};
PemPair certificate(const Said& said = {});

/// A directory with files for TLS, gone with it.
class TlsFiles {
  public:
    /// `server`, and as the roots of clients what `clientCa` has, if anything.
    explicit TlsFiles(const PemPair& server = certificate({{"server"}}),
                      const std::string& clientCa = "");
    ~TlsFiles();
    TlsFiles(const TlsFiles&) = delete;
    TlsFiles& operator=(const TlsFiles&) = delete;

    TlsContext::Files files() const { return _files; }
    void put(const PemPair& server) const;
    static void write(const std::filesystem::path& file, const std::string& text);

  private:
    std::filesystem::path _directory;
    TlsContext::Files _files;
};

/// A context with a certificate of its own.
std::shared_ptr<TlsContext> someTls();

} // namespace embedded::http::test
