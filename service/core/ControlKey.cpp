#include "ControlKey.h"

#include "PrivateFile.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace quorvane::service {

namespace {

using ByteVector = std::vector<std::uint8_t>;

constexpr const char *serverKeyName = "OpenVPN tls-crypt-v2 server key";
constexpr const char *clientKeyName = "OpenVPN tls-crypt-v2 client key";
constexpr std::size_t hmacKeyOffset = 64;
constexpr std::size_t keyLength = 32;
constexpr std::size_t tagLength = 32;
constexpr std::size_t lengthLength = 2;
constexpr std::size_t clientKeyLength = 256;
/// The wrapped key's metadata is a time.
constexpr std::uint8_t timeMetadata = 1;

struct FreeBio {
    void operator()(BIO *bio) const { BIO_free_all(bio); }
};

using Bio = std::unique_ptr<BIO, FreeBio>;

void require(bool succeeded) {
    if (!succeeded) {
        throw std::runtime_error("OpenSSL cannot make a key of tls-crypt-v2");
    }
}

void appendBigEndian(ByteVector &bytes, std::uint64_t number, unsigned length) {
    for (unsigned i = length; i > 0; --i) {
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * (i - 1))));
    }
}

std::string pemText(const char *name, const ByteVector &bytes) {
    const Bio bio(BIO_new(BIO_s_mem()));
    require(bio != nullptr &&
            PEM_write_bio(bio.get(), name, "", bytes.data(), static_cast<long>(bytes.size())) > 0);
    char *text = nullptr;
    const long length = BIO_get_mem_data(bio.get(), &text);
    return {text, static_cast<std::size_t>(length)};
}

ByteVector hmac(const std::uint8_t *key, const ByteVector &text) {
    ByteVector tag(tagLength);
    std::size_t length = 0;
    require(EVP_Q_mac(nullptr, "HMAC", nullptr, "SHA256", nullptr, key, keyLength, text.data(), text.size(),
                      tag.data(), tag.size(), &length) != nullptr &&
            length == tagLength);
    return tag;
}

/// AES-256 in counter mode; the counter begins with the first half of `tag`.
ByteVector encrypted(const std::uint8_t *key, const ByteVector &tag, const ByteVector &text) {
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> cipher(EVP_CIPHER_CTX_new(),
                                                                                 &EVP_CIPHER_CTX_free);
    ByteVector result(text.size());
    int length = 0;
    require(cipher != nullptr &&
            EVP_EncryptInit_ex(cipher.get(), EVP_aes_256_ctr(), nullptr, key, tag.data()) == 1 &&
            EVP_EncryptUpdate(cipher.get(), result.data(), &length, text.data(),
                              static_cast<int>(text.size())) == 1 &&
            static_cast<std::size_t>(length) == text.size());
    return result;
}

} // namespace

ControlKey::~ControlKey() {
    OPENSSL_cleanse(m_bytes.data(), m_bytes.size());
}

Result<ControlKey> ControlKey::parse(std::string_view pem) {
    const Bio bio(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
    char *name = nullptr;
    char *header = nullptr;
    unsigned char *data = nullptr;
    long length = 0;
    const bool read = bio != nullptr && PEM_read_bio(bio.get(), &name, &header, &data, &length) == 1;
    const bool valid = read && std::strcmp(name, serverKeyName) == 0 && length == static_cast<long>(size);
    Bytes bytes{};
    if (valid) {
        std::copy_n(data, size, bytes.begin());
    }
    OPENSSL_free(name);
    OPENSSL_free(header);
    OPENSSL_clear_free(data, read ? static_cast<std::size_t>(length) : 0);
    ControlKey key(bytes);
    OPENSSL_cleanse(bytes.data(), bytes.size());
    return valid ? Result<ControlKey>(key) : Failure{"is not a server key of tls-crypt-v2"};
}

Result<ControlKey> ControlKey::load(const std::string &path) {
    auto text = privateFileText(path);
    if (!text) {
        return Failure{text.error()};
    }
    auto key = parse(text.value());
    return key ? std::move(key) : Failure{path + ' ' + key.error()};
}

Result<ControlKey> ControlKey::loadOrMake(const std::string &path) {
    if (access(path.c_str(), F_OK) != 0 && errno == ENOENT) {
        ByteVector bytes(size);
        require(RAND_priv_bytes(bytes.data(), static_cast<int>(bytes.size())) == 1);
        if (auto written = writePrivateFile(path, pemText(serverKeyName, bytes)); !written) {
            return Failure{written.error()};
        }
    }
    return load(path);
}

std::string ControlKey::clientBlock(std::chrono::system_clock::time_point time) const {
    const std::uint8_t *cipherKey = m_bytes.data();
    const std::uint8_t *hmacKey = m_bytes.data() + hmacKeyOffset;
    ByteVector clientKey(clientKeyLength);
    require(RAND_priv_bytes(clientKey.data(), static_cast<int>(clientKey.size())) == 1);

    ByteVector plain = clientKey;
    plain.push_back(timeMetadata);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count();
    appendBigEndian(plain, static_cast<std::uint64_t>(seconds), 8);

    // The tag covers the length, too, which is the last part of the wrapped key, in clear text.
    ByteVector authenticated;
    appendBigEndian(authenticated, tagLength + plain.size() + lengthLength, lengthLength);
    authenticated.insert(authenticated.end(), plain.begin(), plain.end());
    const ByteVector tag = hmac(hmacKey, authenticated);
    const ByteVector secret = encrypted(cipherKey, tag, plain);

    ByteVector content = clientKey;
    content.insert(content.end(), tag.begin(), tag.end());
    content.insert(content.end(), secret.begin(), secret.end());
    appendBigEndian(content, tagLength + plain.size() + lengthLength, lengthLength);
    return "<tls-crypt-v2>\n" + pemText(clientKeyName, content) + "</tls-crypt-v2>\n";
}

} // namespace quorvane::service
