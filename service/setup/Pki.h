#pragma once

#include "common/Result.h"

#include <chrono>
#include <string>

/// Keys and certificates as texts in PEM. All keys are of the curve P-256.
namespace quorvane::service::Pki {

using Time = std::chrono::system_clock::time_point;

/// A certificate and its private key.
struct Pair {
    std::string certificate;
    std::string key;
};

/// What a server's certificate is made for.
struct Server {
    std::string name;        ///< the common name
    std::string host;        ///< host name or IPv4 address that clients check; empty: none
    std::chrono::hours life; ///< ended earlier when the authority's certificate ends before
};

/// A new private key.
Result<std::string> newKey();

/// The certificate of an authority, signed with its own key.
Result<std::string> authorityCertificate(const std::string &key, const std::string &name,
                                         std::chrono::hours life, Time now);

/// A certificate for the owner of a private key, signed by the authority.
Result<std::string> serverCertificate(const Pair &authority, const std::string &key, const Server &server,
                                      Time now);

/// The time in which a certificate is valid.
struct Validity {
    Time begin;
    Time end;

    /// Less than a third of the whole time is left.
    [[nodiscard]] bool isNearItsEnd(Time now) const { return end - now < (end - begin) / 3; }
};

/// Of the first certificate in the text.
Result<Validity> validity(const std::string &certificate);
/// True when the first certificate is for the host name or IPv4 address.
[[nodiscard]] bool isFor(const std::string &certificate, const std::string &host);
/// True when the private key is that of the first certificate.
[[nodiscard]] bool belongsTo(const std::string &key, const std::string &certificate);
/// True when the first certificate is signed by the authority.
[[nodiscard]] bool isSignedBy(const std::string &certificate, const std::string &authority);

} // namespace quorvane::service::Pki
