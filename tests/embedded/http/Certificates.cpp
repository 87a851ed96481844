#include "Certificates.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <stdexcept>

#ifdef __SANITIZE_THREAD__
// TSan does not see the atomics with which OpenSSL, which is not built for it, counts who uses
// what.
extern "C" const char* __tsan_default_suppressions(); // NOLINT(bugprone-reserved-identifier)
const char* __tsan_default_suppressions() {           // NOLINT(bugprone-reserved-identifier)
    return "race:CRYPTO_THREAD_lock_free\n";
}
#endif

namespace embedded::http::test {

namespace {

void require(bool done) {
    if (!done)
        throw std::runtime_error("no certificate for the test");
}

template <class Write>
std::string pem(const Write& write) {
    const std::unique_ptr<BIO, void (*)(BIO*)> out(BIO_new(BIO_s_mem()), BIO_free_all);
    require(write(out.get()) == 1);
    std::string text(BIO_ctrl_pending(out.get()), ' ');
    require(BIO_read(out.get(), text.data(), static_cast<int>(text.size())) ==
            static_cast<int>(text.size()));
    return text;
}

// Throws away nothing that it fails to make: it is for tests.
void addPadding(X509* certificate, std::size_t size) {
    const std::string bytes(size, 'x');
    ASN1_OCTET_STRING* const text = ASN1_OCTET_STRING_new();
    require(ASN1_OCTET_STRING_set(text, reinterpret_cast<const unsigned char*>(bytes.data()),
                                  static_cast<int>(size)) == 1);
    ASN1_OBJECT* const kind = OBJ_txt2obj("1.3.6.1.4.1.55555.1", 1);
    X509_EXTENSION* const extension = X509_EXTENSION_create_by_OBJ(nullptr, kind, 0, text);
    require(X509_add_ext(certificate, extension, -1) == 1);
    X509_EXTENSION_free(extension);
    ASN1_OBJECT_free(kind);
    ASN1_OCTET_STRING_free(text);
}

} // namespace

bool everythingOverTls() {
    static const bool wanted = std::getenv("HTTP_TEST_TLS") != nullptr;
    return wanted;
}

PemPair certificate(const Said& said) {
    const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key(
        EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), EVP_PKEY_free);
    const std::unique_ptr<X509, void (*)(X509*)> made(X509_new(), X509_free);
    require(key && made && X509_set_version(made.get(), X509_VERSION_3) == 1);
    X509_NAME* const subject = X509_get_subject_name(made.get());
    for (const std::string& name : said.commonNames)
        require(X509_NAME_add_entry_by_NID(subject, NID_commonName, said.commonNameType,
                                           reinterpret_cast<const unsigned char*>(name.data()),
                                           static_cast<int>(name.size()), -1, 0) == 1);
    require(X509_set_issuer_name(made.get(), subject) == 1);
    X509_gmtime_adj(X509_getm_notBefore(made.get()), said.validFrom);
    X509_gmtime_adj(X509_getm_notAfter(made.get()), said.validTo);
    require(X509_set_pubkey(made.get(), key.get()) == 1);
    X509_EXTENSION* const names =
        X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "DNS:localhost");
    require(X509_add_ext(made.get(), names, -1) == 1);
    X509_EXTENSION_free(names);
    if (said.padding != 0)
        addPadding(made.get(), said.padding);
    require(X509_sign(made.get(), key.get(), EVP_sha256()) > 0);
    return {pem([&](BIO* out) { return PEM_write_bio_X509(out, made.get()); }), pem([&](BIO* out) {
                return PEM_write_bio_PKCS8PrivateKey(out, key.get(), nullptr, nullptr, 0, nullptr,
                                                     nullptr);
            })};
}

TlsFiles::TlsFiles(const PemPair& server, const std::string& clientCa) {
    std::string name = testing::TempDir() + "http-XXXXXX";
    if (!::mkdtemp(name.data()))
        throw std::runtime_error("cannot make a directory like " + name);
    _directory = name;
    _files = {_directory / "certificate.pem", _directory / "key.pem", {}};
    put(server);
    if (clientCa.empty())
        return;
    _files.clientCa = _directory / "ca.pem";
    write(_files.clientCa, clientCa);
}

TlsFiles::~TlsFiles() { std::filesystem::remove_all(_directory); }

void TlsFiles::put(const PemPair& server) const {
    write(_files.certificate, server.certificate);
    write(_files.key, server.key);
}

void TlsFiles::write(const std::filesystem::path& file, const std::string& text) {
    std::ofstream(file) << text;
}

std::shared_ptr<TlsContext> someTls() {
    const TlsFiles files;
    return std::make_shared<TlsContext>(files.files());
}

} // namespace embedded::http::test
