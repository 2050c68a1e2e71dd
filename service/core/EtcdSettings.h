#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace quorvane::service {

class JsonReader;

/// How a node reaches etcd, which holds what all nodes share.
struct EtcdSettings {
    struct Endpoint {
        std::string address; ///< numeric: the process looks up no names
        std::uint16_t port = 0;
    };

    std::vector<Endpoint> endpoints; ///< they are tried in turn
    std::string ca;                  ///< file of the authority of the servers' certificates
    std::string certificate;         ///< file of the node's own, with its chain
    std::string key;                 ///< private file
    std::string prefix = "/quorvane/";
    std::string name; ///< the node's
    std::chrono::seconds lease{3};
};

/// Reads the object "etcd". Throws ConfigError.
[[nodiscard]] EtcdSettings readEtcdSettings(JsonReader &reader);

} // namespace quorvane::service
