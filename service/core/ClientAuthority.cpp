#include "ClientAuthority.h"

#include "PrivateFile.h"
#include "VpnConfiguration.h"

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quorvane::service {

namespace {

template <auto Function>
struct Free {
    template <typename Object>
    void operator()(Object *object) const {
        Function(object);
    }
};

using Bio = std::unique_ptr<BIO, Free<&BIO_free_all>>;
using PrivateKey = std::unique_ptr<EVP_PKEY, Free<&EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Free<&X509_free>>;
using Name = std::unique_ptr<X509_NAME, Free<&X509_NAME_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Free<&X509_EXTENSION_free>>;
using Number = std::unique_ptr<BIGNUM, Free<&BN_free>>;

constexpr int serialBits = 127;
constexpr int version3 = 2;
/// Clocks of a service's machines may differ.
constexpr long secondsBefore = -86400;
/// The time that X.509 defines for a certificate without an end.
constexpr const char *noEnd = "99991231235959Z";

void require(bool succeeded) {
    if (!succeeded) {
        throw std::runtime_error("OpenSSL cannot make a certificate");
    }
}

std::string textOf(const Bio &bio) {
    char *text = nullptr;
    const long length = BIO_get_mem_data(bio.get(), &text);
    return {text, static_cast<std::size_t>(length)};
}

Bio memory() {
    Bio bio(BIO_new(BIO_s_secmem()));
    require(bio != nullptr);
    return bio;
}

std::string pemOf(const Certificate &certificate) {
    const Bio bio = memory();
    require(PEM_write_bio_X509(bio.get(), certificate.get()) == 1);
    return textOf(bio);
}

std::string pemOf(const PrivateKey &key) {
    const Bio bio = memory();
    require(PEM_write_bio_PrivateKey(bio.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) == 1);
    return textOf(bio);
}

PrivateKey newKey() {
    PrivateKey key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
    require(key != nullptr);
    return key;
}

Name nameOf(const std::vector<SubjectAttribute> &attributes) {
    Name name(X509_NAME_new());
    require(name != nullptr);
    for (const SubjectAttribute &attribute : attributes) {
        const auto *text = reinterpret_cast<const unsigned char *>(attribute.text.data());
        require(X509_NAME_add_entry_by_txt(name.get(), attribute.name, MBSTRING_ASC, text,
                                           static_cast<int>(attribute.text.size()), -1, 0) == 1);
    }
    return name;
}

void addExtension(const Certificate &certificate, int identifier, const char *value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate.get(), certificate.get(), nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, identifier, value));
    require(extension != nullptr && X509_add_ext(certificate.get(), extension.get(), -1) == 1);
}

/// A certificate without extensions and signature.
Certificate newCertificate(const PrivateKey &key, const X509_NAME *subject, const X509_NAME *issuer) {
    Certificate certificate(X509_new());
    const Number serial(BN_new());
    require(certificate != nullptr && serial != nullptr &&
            BN_rand(serial.get(), serialBits, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY) == 1 &&
            X509_set_version(certificate.get(), version3) == 1 &&
            BN_to_ASN1_INTEGER(serial.get(), X509_get_serialNumber(certificate.get())) != nullptr &&
            X509_gmtime_adj(X509_getm_notBefore(certificate.get()), secondsBefore) != nullptr &&
            ASN1_TIME_set_string_X509(X509_getm_notAfter(certificate.get()), noEnd) == 1 &&
            X509_set_subject_name(certificate.get(), subject) == 1 &&
            X509_set_issuer_name(certificate.get(), issuer) == 1 &&
            X509_set_pubkey(certificate.get(), key.get()) == 1);
    return certificate;
}

void sign(const Certificate &certificate, EVP_PKEY *key) {
    require(X509_sign(certificate.get(), key, EVP_sha256()) > 0);
}

/// Each authority has a name of its own, so that OpenVPN finds the right one of several.
std::string newAuthorityName() {
    constexpr std::string_view digits = "0123456789abcdef";
    std::array<unsigned char, 8> bytes{};
    require(RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) == 1);
    std::string name = "Sessions ";
    for (const unsigned char byte : bytes) {
        name += digits[byte >> 4];
        name += digits[byte & 15];
    }
    return name;
}

/// The file of a new authority.
std::string newAuthority() {
    const PrivateKey key = newKey();
    const Name name = nameOf({{"CN", newAuthorityName()}});
    const Certificate certificate = newCertificate(key, name.get(), name.get());
    addExtension(certificate, NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
    addExtension(certificate, NID_key_usage, "critical,keyCertSign");
    addExtension(certificate, NID_subject_key_identifier, "hash");
    sign(certificate, key.get());
    return pemOf(certificate) + pemOf(key);
}

} // namespace

struct ClientAuthority::Signer {
    Certificate certificate;
    PrivateKey key; ///< null: nothing can be signed
    Extension usage;
};

ClientAuthority::ClientAuthority() : m_signer(std::make_unique<Signer>()) {}

ClientAuthority::ClientAuthority(ClientAuthority &&other) noexcept = default;
ClientAuthority &ClientAuthority::operator=(ClientAuthority &&other) noexcept = default;
ClientAuthority::~ClientAuthority() = default;

Result<ClientAuthority> ClientAuthority::parse(std::string_view pem) {
    ClientAuthority authority;
    authority.m_certificates = pemCertificates(pem);
    const auto bioOf = [](std::string_view text) {
        return Bio(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
    };
    Signer &signer = *authority.m_signer;
    signer.certificate.reset(
        PEM_read_bio_X509(bioOf(authority.m_certificates).get(), nullptr, nullptr, nullptr));
    // An encrypted key would make OpenSSL ask for its password at the terminal.
    const auto noPassword = [](char *, int, int, void *) {
        return -1;
    };
    signer.key.reset(PEM_read_bio_PrivateKey(bioOf(pem).get(), nullptr, noPassword, nullptr));
    ERR_clear_error(); // what is left there would be taken for an error of a TLS connection
    if (!signer.certificate || X509_check_ca(signer.certificate.get()) != 1) {
        return Failure{"does not contain the certificate of an authority"};
    }
    if (!signer.key && pem.find("PRIVATE KEY-----") != std::string_view::npos) {
        return Failure{"contains a key that cannot be read"};
    }
    if (signer.key && X509_check_private_key(signer.certificate.get(), signer.key.get()) != 1) {
        ERR_clear_error();
        return Failure{"contains a key of another certificate than the first"};
    }
    signer.usage.reset(X509V3_EXT_conf_nid(nullptr, nullptr, NID_ext_key_usage, "clientAuth"));
    require(signer.usage != nullptr);
    return authority;
}

Result<ClientAuthority> ClientAuthority::load(const std::string &path) {
    auto text = privateFileText(path);
    if (!text) {
        return Failure{text.error()};
    }
    auto authority = parse(text.value());
    return authority ? std::move(authority) : Failure{path + ' ' + authority.error()};
}

Result<ClientAuthority> ClientAuthority::loadOrMake(const std::string &path) {
    if (access(path.c_str(), F_OK) != 0 && errno == ENOENT) {
        if (auto written = writePrivateFile(path, newAuthority()); !written) {
            return Failure{written.error()};
        }
    }
    return load(path);
}

bool ClientAuthority::canSign() const {
    return m_signer->key != nullptr;
}

std::string ClientAuthority::clientBlocks(const Grant &grant) const {
    require(canSign());
    const PrivateKey key = newKey();
    const Name subject = nameOf(subjectOf(grant));
    const Certificate certificate =
        newCertificate(key, subject.get(), X509_get_subject_name(m_signer->certificate.get()));
    require(X509_add_ext(certificate.get(), m_signer->usage.get(), -1) == 1);
    sign(certificate, m_signer->key.get());
    return "<cert>\n" + pemOf(certificate) + "</cert>\n<key>\n" + pemOf(key) + "</key>\n";
}

} // namespace quorvane::service
