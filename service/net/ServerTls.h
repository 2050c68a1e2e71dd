#pragma once

#include "core/Config.h"

#include <openssl/ssl.h>

namespace quorvane::service {

/// Makes a TLS context ready for the HTTPS listener: the protocol's settings, the certificate and its key.
/// The message of a failure names the key of the configuration.
Result<> prepareServerTls(SSL_CTX *context, const Config &config);

} // namespace quorvane::service
