#pragma once

#include "Grant.h"
#include "common/Result.h"

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

namespace quorvane::service {

/// Signs a certificate for each configuration: P-256, with a key of its own, and with the grant in its
/// subject.
///
/// The certificates do not end: OpenVPN would refuse a session's renewal of keys after the end. How long one
/// is useful is decided by the grant in it, at its login.
class ClientAuthority {
public:
    /// Reads PEM: the authority's certificate and key. Without a key nothing can be signed. Certificates
    /// after the first are of earlier authorities, whose certificates are still accepted.
    static Result<ClientAuthority> parse(std::string_view pem);
    /// Reads a file that no other user can read or has written.
    static Result<ClientAuthority> load(const std::string &path);
    /// Reads the file, or makes a new authority and writes it when the file does not exist.
    static Result<ClientAuthority> loadOrMake(const std::string &path);

    ClientAuthority(ClientAuthority &&other) noexcept;
    ClientAuthority &operator=(ClientAuthority &&other) noexcept;
    ~ClientAuthority();

    /// False without the authority's key.
    [[nodiscard]] bool canSign() const;

    /// All certificates as PEM: what an OpenVPN server checks its clients' certificates with.
    [[nodiscard]] const std::string &certificates() const { return m_certificates; }

    /// A new certificate and its key as the blocks <cert> and <key> of a client configuration. Every line has
    /// a line feed. Throws std::runtime_error without a key of the authority, or when the system has no
    /// random bytes.
    [[nodiscard]] std::string clientBlocks(const Grant &grant) const;

private:
    struct Signer;

    ClientAuthority();

    std::string m_certificates;
    std::unique_ptr<Signer> m_signer;
};

} // namespace quorvane::service
