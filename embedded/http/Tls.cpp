#include "http/Tls.h"

#include "limits/Limits.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace embedded::http {

namespace {

using Context = std::shared_ptr<SSL_CTX>;

// Nobody is there to be asked for the password of a key; without this, OpenSSL asks the terminal.
int noPassword(char*, int, int, void*) { return -1; }

void require(bool done, const std::string& what, const std::filesystem::path& file) {
    if (!done)
        throw std::runtime_error("cannot use the " + what + " " + file.string() + ": " +
                                 tlsError());
}

// Tickets hold what was agreed with a client, so that nothing is kept here.
void secure(SSL_CTX* context) {
    constexpr unsigned char id[] = "http";
    SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
    SSL_CTX_set_options(context, SSL_OP_NO_COMPRESSION | SSL_OP_NO_RENEGOTIATION);
    SSL_CTX_set_session_cache_mode(context, SSL_SESS_CACHE_OFF);
    SSL_CTX_set_session_id_context(context, id, sizeof id);
    SSL_CTX_set_max_cert_list(context, limits::clientCertificates);
    SSL_CTX_set_default_passwd_cb(context, noPassword);
}

Context load(const TlsContext::Files& files) {
    ERR_clear_error();
    Context context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
    if (!context)
        throw std::runtime_error("no TLS: " + tlsError());
    secure(context.get());
    require(SSL_CTX_use_certificate_chain_file(context.get(), files.certificate.c_str()) == 1,
            "certificate", files.certificate);
    require(SSL_CTX_use_PrivateKey_file(context.get(), files.key.c_str(), SSL_FILETYPE_PEM) == 1,
            "key", files.key);
    if (files.clientCa.empty())
        return context;
    require(SSL_CTX_load_verify_file(context.get(), files.clientCa.c_str()) == 1, "client CA file",
            files.clientCa);
    STACK_OF(X509_NAME)* const names = SSL_load_client_CA_file(files.clientCa.c_str());
    require(names != nullptr, "client CA file", files.clientCa);
    SSL_CTX_set_client_CA_list(context.get(), names);
    SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
    return context;
}

} // namespace

TlsContext::TlsContext(Files files) : _files(std::move(files)), _current(load(_files)) {}

void TlsContext::reload() {
    Context fresh = load(_files);
    const threads::Lock lock(_mutex);
    _current.swap(fresh);
}

std::shared_ptr<ssl_ctx_st> TlsContext::current() const {
    const threads::Lock lock(_mutex);
    return _current;
}

std::string tlsError() {
    const unsigned long error = ERR_get_error();
    ERR_clear_error();
    if (ERR_SYSTEM_ERROR(error))
        return std::generic_category().message(ERR_GET_REASON(error));
    const char* const reason = ERR_reason_error_string(error);
    return reason ? reason : "unknown error";
}

} // namespace embedded::http
