#pragma once

#include "common/Result.h"
#include "core/EtcdSettings.h"

#include <memory>

namespace boost::asio::ssl {
class context;
}

namespace quorvane::service {

/// What connections to etcd need of TLS: the authority, and the node's own certificate and key. The files are
/// read now and never again. The message of a failure names the key of the configuration.
Result<std::shared_ptr<boost::asio::ssl::context>> makeEtcdTls(const EtcdSettings &settings);

} // namespace quorvane::service
