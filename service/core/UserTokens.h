#pragma once

#include "common/Result.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::service {

/// Makes and checks the VPN users of server lists, without a memory of them.
///
/// A user is a token of letters and digits: a random salt and the end of the user's life, sealed with
/// AES-256-GCM. Each token has a key of its own, derived from the salt, so a key and its nonce are used once
/// only. The password is an HMAC of the token with another key. Both keys are derived from one key of the key
/// file. The first key of the file makes new users, those of the others are still accepted.
class UserTokens {
public:
    static constexpr std::size_t keySize = 32;
    static constexpr std::size_t maximumKeys = 16;
    using Key = std::array<std::uint8_t, keySize>;
    using TimePoint = std::chrono::system_clock::time_point;

    /// The content of a valid token.
    struct User {
        TimePoint end; ///< in whole seconds; the user is unknown from then on
        std::string password;
    };

    struct Sealed {
        std::string token;
        std::string password;
    };

    /// Without keys: all tokens are invalid, and none can be made.
    UserTokens() = default;
    explicit UserTokens(std::vector<Key> keys);

    /// Reads the text of a key file: 64 hexadecimal digits per line.
    static Result<UserTokens> parse(std::string_view text);
    /// Reads a file that no other user can read or has written.
    static Result<UserTokens> load(const std::string &path);
    /// Reads the file, or makes one with a new key when it does not exist.
    static Result<UserTokens> loadOrMake(const std::string &path);

    /// A new token with its password. Throws std::runtime_error without a key or when the system has no
    /// random bytes.
    [[nodiscard]] Sealed seal(TimePoint end) const;
    /// Nothing for a text that none of the keys has sealed. Does not judge the end.
    [[nodiscard]] std::optional<User> open(std::string_view token) const;

private:
    struct DerivedKeys {
        Key seal;
        Key password;
    };

    std::vector<DerivedKeys> m_keys;
};

} // namespace quorvane::service
