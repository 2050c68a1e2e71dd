#include <boost/asio/buffer.hpp>
#include <boost/asio/ssl/context.hpp>

#include "EtcdTls.h"

#include "core/PrivateFile.h"

#include <fstream>
#include <openssl/err.h>
#include <sstream>

namespace quorvane::service {

namespace asio = boost::asio;
namespace ssl = boost::asio::ssl;
using boost::system::error_code;

namespace {

constexpr std::size_t maximumKeyFile = 64 << 10;

std::string textOf(const std::string &path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

Result<std::shared_ptr<ssl::context>> makeEtcdTls(const EtcdSettings &settings) {
    const auto context = std::make_shared<ssl::context>(ssl::context::tls_client);
    ERR_clear_error();
    SSL_CTX_set_min_proto_version(context->native_handle(), TLS1_2_VERSION);
    context->set_verify_mode(ssl::verify_peer | ssl::verify_fail_if_no_peer_cert);
    const auto key = privateFileText(settings.key, maximumKeyFile);
    if (!key) {
        return Failure{"etcd.key: " + key.error()};
    }
    error_code error;
    const std::string authority = textOf(settings.ca);
    context->add_certificate_authority(asio::buffer(authority), error);
    if (error) {
        return Failure{"etcd.ca: " + settings.ca + ": " + error.message()};
    }
    const std::string certificate = textOf(settings.certificate);
    context->use_certificate_chain(asio::buffer(certificate), error);
    if (error) {
        return Failure{"etcd.certificate: " + settings.certificate + ": " + error.message()};
    }
    context->use_private_key(asio::buffer(key.value()), ssl::context::pem, error);
    if (error || SSL_CTX_check_private_key(context->native_handle()) != 1) {
        ERR_clear_error();
        return Failure{"etcd.key: " + settings.key + ": is no key of the certificate"};
    }
    return context;
}

} // namespace quorvane::service
