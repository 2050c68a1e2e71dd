#include "UserTokens.h"

#include "PrivateFile.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <span>
#include <stdexcept>
#include <unistd.h>

namespace quorvane::service {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
/// 8 bytes are written as 11 letters and digits: 62^11 is the first power that is greater than 2^64.
constexpr std::size_t wordLength = 8;
constexpr std::size_t wordLetters = 11;

constexpr std::size_t saltLength = 16;
constexpr std::size_t endLength = 8;
constexpr std::size_t tagLength = 16;
constexpr std::size_t tokenLength = saltLength + endLength + tagLength;
constexpr std::size_t tokenLetters = tokenLength / wordLength * wordLetters;
constexpr std::array<std::uint8_t, 12> nonce{};

using Token = std::array<std::uint8_t, tokenLength>;
using Cipher = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

void require(bool succeeded) {
    if (!succeeded) {
        throw std::runtime_error("OpenSSL cannot make a VPN user");
    }
}

std::uint64_t readBigEndian(Bytes bytes) {
    std::uint64_t number = 0;
    for (const std::uint8_t byte : bytes) {
        number = number << 8 | byte;
    }
    return number;
}

void writeBigEndian(std::uint64_t number, std::span<std::uint8_t> bytes) {
    for (std::size_t i = bytes.size(); i > 0; --i) {
        bytes[i - 1] = static_cast<std::uint8_t>(number);
        number >>= 8;
    }
}

/// The length of `bytes` is a multiple of wordLength.
std::string lettersOf(Bytes bytes) {
    std::string text(bytes.size() / wordLength * wordLetters, '\0');
    for (std::size_t word = 0; word * wordLength < bytes.size(); ++word) {
        std::uint64_t number = readBigEndian(bytes.subspan(word * wordLength, wordLength));
        for (std::size_t i = wordLetters; i > 0; --i) {
            text[word * wordLetters + i - 1] = alphabet[number % alphabet.size()];
            number /= alphabet.size();
        }
    }
    return text;
}

std::optional<Token> tokenOf(std::string_view text) {
    if (text.size() != tokenLetters) {
        return std::nullopt;
    }
    Token token{};
    for (std::size_t word = 0; word * wordLength < tokenLength; ++word) {
        std::uint64_t number = 0;
        for (const char letter : text.substr(word * wordLetters, wordLetters)) {
            const auto digit = alphabet.find(letter);
            if (digit == std::string_view::npos || __builtin_mul_overflow(number, alphabet.size(), &number) ||
                __builtin_add_overflow(number, digit, &number)) {
                return std::nullopt;
            }
        }
        writeBigEndian(number, std::span(token).subspan(word * wordLength, wordLength));
    }
    return token;
}

UserTokens::Key hmac(const UserTokens::Key &key, Bytes text) {
    UserTokens::Key result{};
    unsigned length = 0;
    require(HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()), text.data(), text.size(),
                 result.data(), &length) != nullptr &&
            length == result.size());
    return result;
}

UserTokens::Key derived(const UserTokens::Key &key, std::string_view purpose) {
    return hmac(key, {reinterpret_cast<const std::uint8_t *>(purpose.data()), purpose.size()});
}

Cipher newCipher() {
    Cipher cipher(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
    require(cipher != nullptr);
    return cipher;
}

/// Returns the end of the user's life in seconds.
std::optional<std::uint64_t> unsealed(const UserTokens::Key &sealKey, Token token) {
    UserTokens::Key key = hmac(sealKey, Bytes(token).first(saltLength));
    const Cipher cipher = newCipher();
    std::array<std::uint8_t, endLength> end{};
    std::uint8_t *tag = token.data() + saltLength + endLength;
    int length = 0;
    require(EVP_DecryptInit_ex(cipher.get(), EVP_aes_256_gcm(), nullptr, key.data(), nonce.data()) == 1 &&
            EVP_DecryptUpdate(cipher.get(), end.data(), &length, token.data() + saltLength, endLength) == 1 &&
            EVP_CIPHER_CTX_ctrl(cipher.get(), EVP_CTRL_AEAD_SET_TAG, tagLength, tag) == 1);
    OPENSSL_cleanse(key.data(), key.size());
    if (EVP_DecryptFinal_ex(cipher.get(), end.data() + endLength, &length) != 1) {
        return std::nullopt;
    }
    return readBigEndian(end);
}

std::string passwordOf(const UserTokens::Key &passwordKey, const Token &token) {
    return lettersOf(hmac(passwordKey, token));
}

std::optional<UserTokens::Key> keyOf(std::string_view line) {
    constexpr std::string_view digits = "0123456789abcdef";
    UserTokens::Key key{};
    if (line.size() != 2 * key.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < key.size(); ++i) {
        const auto high = digits.find(line[2 * i]);
        const auto low = digits.find(line[2 * i + 1]);
        if (high == std::string_view::npos || low == std::string_view::npos) {
            return std::nullopt;
        }
        key[i] = static_cast<std::uint8_t>(high << 4 | low);
    }
    return key;
}

/// A line of a key file with a new key.
std::string newKeyLine() {
    constexpr std::string_view digits = "0123456789abcdef";
    UserTokens::Key key{};
    require(RAND_priv_bytes(key.data(), static_cast<int>(key.size())) == 1);
    std::string line;
    for (const std::uint8_t byte : key) {
        line += digits[byte >> 4];
        line += digits[byte & 15];
    }
    OPENSSL_cleanse(key.data(), key.size());
    return line + '\n';
}

} // namespace

UserTokens::UserTokens(std::vector<Key> keys) {
    for (Key &key : keys) {
        m_keys.push_back({derived(key, "token of a VPN user"), derived(key, "password of a VPN user")});
        OPENSSL_cleanse(key.data(), key.size());
    }
}

Result<UserTokens> UserTokens::parse(std::string_view text) {
    std::vector<Key> keys;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto key = keyOf(text.substr(0, end));
        if (!key || keys.size() == maximumKeys) {
            return Failure{"must have 1 to " + std::to_string(maximumKeys) +
                           " lines of 64 hexadecimal digits in lower case"};
        }
        keys.push_back(*key);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    if (keys.empty()) {
        return Failure{"contains no key"};
    }
    return UserTokens(std::move(keys));
}

Result<UserTokens> UserTokens::load(const std::string &path) {
    auto text = privateFileText(path);
    if (!text) {
        return Failure{text.error()};
    }
    auto tokens = parse(text.value());
    return tokens ? std::move(tokens) : Failure{path + ' ' + tokens.error()};
}

Result<UserTokens> UserTokens::loadOrMake(const std::string &path) {
    if (access(path.c_str(), F_OK) != 0 && errno == ENOENT) {
        if (auto written = writePrivateFile(path, newKeyLine()); !written) {
            return Failure{written.error()};
        }
    }
    return load(path);
}

UserTokens::Sealed UserTokens::seal(TimePoint end) const {
    require(!m_keys.empty());
    Token token{};
    require(RAND_bytes(token.data(), saltLength) == 1);
    UserTokens::Key key = hmac(m_keys.front().seal, Bytes(token).first(saltLength));
    const auto seconds = std::chrono::floor<std::chrono::seconds>(end.time_since_epoch()).count();
    std::array<std::uint8_t, endLength> plain{};
    writeBigEndian(static_cast<std::uint64_t>(seconds), plain);
    const Cipher cipher = newCipher();
    std::uint8_t *tag = token.data() + saltLength + endLength;
    int length = 0;
    require(EVP_EncryptInit_ex(cipher.get(), EVP_aes_256_gcm(), nullptr, key.data(), nonce.data()) == 1 &&
            EVP_EncryptUpdate(cipher.get(), token.data() + saltLength, &length, plain.data(), endLength) ==
                1 &&
            EVP_EncryptFinal_ex(cipher.get(), tag, &length) == 1 &&
            EVP_CIPHER_CTX_ctrl(cipher.get(), EVP_CTRL_AEAD_GET_TAG, tagLength, tag) == 1);
    OPENSSL_cleanse(key.data(), key.size());
    return {lettersOf(token), passwordOf(m_keys.front().password, token)};
}

std::optional<UserTokens::User> UserTokens::open(std::string_view text) const {
    const auto token = tokenOf(text);
    if (!token) {
        return std::nullopt;
    }
    for (const DerivedKeys &keys : m_keys) {
        if (const auto seconds = unsealed(keys.seal, *token)) {
            const std::chrono::seconds end(static_cast<std::int64_t>(*seconds));
            return User{TimePoint(end), passwordOf(keys.password, *token)};
        }
    }
    return std::nullopt;
}

} // namespace quorvane::service
