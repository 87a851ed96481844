#include "http/Stream.h"

#include "text/Utf8.h"

#include <boost/asio/ssl/error.hpp>

#include <memory>
#include <new>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>

namespace embedded::http {

namespace asio = boost::asio;

namespace {

bool isTls(const Stream::Error& error, int reason) {
    return error.category() == asio::error::get_ssl_category() &&
           ERR_GET_REASON(static_cast<unsigned long>(error.value())) == reason;
}

std::string commonName(const X509* certificate) {
    const X509_NAME* const subject = X509_get_subject_name(certificate);
    const int at = X509_NAME_get_index_by_NID(subject, NID_commonName, -1);
    if (at < 0 || X509_NAME_get_index_by_NID(subject, NID_commonName, at) >= 0)
        return {};
    unsigned char* bytes = nullptr;
    const int size =
        ASN1_STRING_to_UTF8(&bytes, X509_NAME_ENTRY_get_data(X509_NAME_get_entry(subject, at)));
    if (size < 0) { // Not tested: OpenSSL reads no certificate with such a name
        ERR_clear_error();
        return {};
    }
    const std::unique_ptr<unsigned char, void (*)(unsigned char*)> freed(
        bytes, [](unsigned char* text) { OPENSSL_free(text); });
    const std::string name(bytes, bytes + size);
    return text::visible(name) == name ? name : std::string();
}

} // namespace

Stream::Stream(Socket socket, const TlsContext* tls) : _socket(std::move(socket)), _farewell() {
    if (!tls)
        return;
    SSL* const connection = SSL_new(tls->current().get());
    if (!connection)
        throw std::bad_alloc();
    _tls.emplace(_socket, connection); // which owns it from here on
    // Asio does not look whether there was memory for the buffers between OpenSSL and itself.
    if (!SSL_get_rbio(connection))
        throw std::bad_alloc();
}

// OpenSSL writes into a buffer of its own here: Asio would write the farewell only to wait for that
// of the client then.
std::string_view Stream::farewell() noexcept {
    if (!_tls || !SSL_is_init_finished(_tls->native_handle()))
        return {};
    BIO* const last = BIO_new(BIO_s_mem());
    if (!last)
        return {};
    SSL_set0_wbio(_tls->native_handle(), last);
    SSL_shutdown(_tls->native_handle());
    const int size = BIO_read(last, _farewell.data(), static_cast<int>(_farewell.size()));
    ERR_clear_error();
    return {_farewell.data(), size < 0 ? 0 : static_cast<std::size_t>(size)};
}

std::string Stream::peerName() {
    SSL* const connection = _tls->native_handle();
    const std::unique_ptr<X509, void (*)(X509*)> certificate(SSL_get1_peer_certificate(connection),
                                                             X509_free);
    if (!certificate || SSL_get_verify_result(connection) != X509_V_OK)
        return {};
    return commonName(certificate.get());
}

std::string Stream::handshakeProblem(const Error& error) {
    if (error == asio::ssl::error::stream_truncated)
        return "the client has ended it";
    std::string problem = error.message();
    if (isTls(error, SSL_R_CERTIFICATE_VERIFY_FAILED))
        problem.append(": ").append(
            X509_verify_cert_error_string(SSL_get_verify_result(_tls->native_handle())));
    return problem;
}

bool Stream::isPlainHttp(const Error& error) { return isTls(error, SSL_R_HTTP_REQUEST); }

} // namespace embedded::http
