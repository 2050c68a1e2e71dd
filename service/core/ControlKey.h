#pragma once

#include "common/Result.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace quorvane::service {

/// The key of the OpenVPN servers for tls-crypt-v2, from which every client configuration receives a client
/// key of its own. A datagram that is not made with such a client key is discarded by the servers before it
/// costs them anything.
///
/// The servers store no client keys: a client sends its key, wrapped with this one, in its first packet.
class ControlKey {
public:
    /// The cipher's and the HMAC's key, of which tls-crypt-v2 uses the first 32 bytes each.
    static constexpr std::size_t size = 128;
    using Bytes = std::array<std::uint8_t, size>;

    explicit ControlKey(const Bytes &bytes) : m_bytes(bytes) {}

    ~ControlKey();
    ControlKey(const ControlKey &) = default;
    ControlKey &operator=(const ControlKey &) = default;

    /// Reads the form of `openvpn --genkey tls-crypt-v2-server`.
    static Result<ControlKey> parse(std::string_view pem);
    /// Reads a file that no other user can read or has written.
    static Result<ControlKey> load(const std::string &path);
    /// Reads the file, or makes a new key and writes it when the file does not exist.
    static Result<ControlKey> loadOrMake(const std::string &path);

    /// A new client key as the block <tls-crypt-v2> of a client configuration. Every line has a line feed.
    /// `time` is written into the wrapped key. Throws std::runtime_error when the system has no random bytes.
    [[nodiscard]] std::string clientBlock(std::chrono::system_clock::time_point time) const;

private:
    Bytes m_bytes;
};

} // namespace quorvane::service
