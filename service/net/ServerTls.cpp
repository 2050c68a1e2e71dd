#include "ServerTls.h"

#include <openssl/err.h>

namespace quorvane::service {

namespace {

/// The reason of OpenSSL's last error. Removes all of them: what is left would be taken for an error of a
/// connection.
std::string opensslReason() {
    const char *reason = ERR_reason_error_string(ERR_peek_last_error());
    std::string text = reason == nullptr ? "cannot be used" : reason;
    ERR_clear_error();
    return text;
}

} // namespace

Result<> prepareServerTls(SSL_CTX *context, const Config &config) {
    ERR_clear_error();
    SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
    // Saves the buffers of connections that wait for their next request.
    SSL_CTX_set_mode(context, SSL_MODE_RELEASE_BUFFERS);
    // The server stores no sessions; session tickets, which clients store, still work.
    SSL_CTX_set_session_cache_mode(context, SSL_SESS_CACHE_OFF);
    if (SSL_CTX_use_certificate_chain_file(context, config.tlsCertificate.c_str()) != 1) {
        return Failure{"tls.certificate: " + config.tlsCertificate + ": " + opensslReason()};
    }
    if (SSL_CTX_use_PrivateKey_file(context, config.tlsKey.c_str(), SSL_FILETYPE_PEM) != 1) {
        return Failure{"tls.key: " + config.tlsKey + ": " + opensslReason()};
    }
    if (SSL_CTX_check_private_key(context) != 1) {
        ERR_clear_error();
        return Failure{"tls.key: does not belong to the certificate"};
    }
    return {};
}

} // namespace quorvane::service
