#include "http/SelfSigned.h"

#include "http/Tls.h"
#include "text/Ascii.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <memory>
#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <stdexcept>

namespace embedded::http {

namespace {

template <class Value, void (*freed)(Value*)>
struct Freeing {
    void operator()(Value* value) const { freed(value); }
};
template <class Value, void (*freed)(Value*)>
using Owned = std::unique_ptr<Value, Freeing<Value, freed>>;

using Key = Owned<EVP_PKEY, EVP_PKEY_free>;
using Certificate = Owned<X509, X509_free>;

constexpr int serialBits = 127;             // positive, and no longer than 20 bytes
constexpr std::size_t commonNameLimit = 64; // RFC 5280, ub-common-name
constexpr std::size_t hostNameLimit = 253;  // RFC 1035, without the dot at the end
constexpr std::chrono::seconds clocksMayDiffer = std::chrono::hours(1);

void require(bool done) {
    if (!done)
        throw std::runtime_error("cannot make a certificate: " + tlsError());
}

bool isAddress(const std::string& name) {
    std::array<char, sizeof(in6_addr)> bytes{};
    return ::inet_pton(AF_INET, name.c_str(), bytes.data()) == 1 ||
           ::inet_pton(AF_INET6, name.c_str(), bytes.data()) == 1;
}

// REQUIRES: each of `names` can be certified, so that none looks like several.
std::string alternativeNames(const std::vector<std::string>& names) {
    std::string all;
    for (const std::string& name : names)
        all.append(all.empty() ? "" : ",").append(isAddress(name) ? "IP:" : "DNS:").append(name);
    return all;
}

void addExtension(X509& certificate, int kind, const char* value) {
    X509V3_CTX context{};
    X509V3_set_ctx(&context, &certificate, &certificate, nullptr, nullptr, 0);
    const Owned<X509_EXTENSION, X509_EXTENSION_free> extension(
        X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    require(extension && X509_add_ext(&certificate, extension.get(), -1) == 1);
}

void setSubject(X509& certificate, const std::string& name) {
    const std::string shown = name.substr(0, commonNameLimit);
    X509_NAME* const subject = X509_get_subject_name(&certificate);
    require(X509_NAME_add_entry_by_NID(subject, NID_commonName, MBSTRING_UTF8,
                                       reinterpret_cast<const unsigned char*>(shown.data()),
                                       static_cast<int>(shown.size()), -1, 0) == 1);
    require(X509_set_issuer_name(&certificate, subject) == 1);
}

void setSerial(X509& certificate) {
    const Owned<BIGNUM, BN_free> number(BN_new());
    require(number && BN_rand(number.get(), serialBits, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY) == 1);
    require(BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(&certificate)) != nullptr);
}

Certificate certify(EVP_PKEY& key, const std::vector<std::string>& names) {
    Certificate certificate(X509_new());
    require(certificate != nullptr);
    require(X509_set_version(certificate.get(), X509_VERSION_3) == 1);
    setSerial(*certificate);
    setSubject(*certificate, names.front());
    const auto from = -clocksMayDiffer;
    require(X509_gmtime_adj(X509_getm_notBefore(certificate.get()), from.count()) &&
            X509_gmtime_adj(X509_getm_notAfter(certificate.get()),
                            std::chrono::seconds(from + selfSignedValidity).count()));
    require(X509_set_pubkey(certificate.get(), &key) == 1);
    addExtension(*certificate, NID_basic_constraints, "critical,CA:FALSE");
    addExtension(*certificate, NID_key_usage, "critical,digitalSignature");
    addExtension(*certificate, NID_ext_key_usage, "serverAuth,clientAuth");
    addExtension(*certificate, NID_subject_key_identifier, "hash");
    addExtension(*certificate, NID_subject_alt_name, alternativeNames(names).c_str());
    require(X509_sign(certificate.get(), &key, EVP_sha256()) > 0);
    return certificate;
}

template <class Write>
std::string pem(const Write& write) {
    const Owned<BIO, BIO_free_all> out(BIO_new(BIO_s_mem()));
    require(out && write(out.get()) == 1);
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(out.get(), &bytes);
    return {bytes, static_cast<std::size_t>(size)};
}

} // namespace

SelfSigned makeSelfSigned(const std::vector<std::string>& names) {
    const Key key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
    require(key != nullptr);
    const Certificate certificate = certify(*key, names);
    return {pem([&](BIO* out) { return PEM_write_bio_X509(out, certificate.get()); }),
            pem([&](BIO* out) {
                return PEM_write_bio_PKCS8PrivateKey(out, key.get(), nullptr, nullptr, 0, nullptr,
                                                     nullptr);
            })};
}

bool canBeCertified(const std::string& name) {
    if (isAddress(name))
        return true;
    const std::string host = name.rfind("*.", 0) == 0 ? name.substr(2) : name;
    return !host.empty() && host.size() <= hostNameLimit && host.front() != '.' &&
           std::all_of(host.begin(), host.end(), [](char letter) {
               return text::isLetter(letter) || text::isDigit(letter) || letter == '-' ||
                      letter == '.' || letter == '_';
           });
}

} // namespace embedded::http
