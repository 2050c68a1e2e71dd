#include "Pki.h"

#include "core/Ipv4.h"

#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <vector>

namespace quorvane::service::Pki {

namespace {

/// A clock of a client may be late by this.
constexpr std::chrono::hours tolerance{1};

template <auto Free>
struct Freer {
    template <typename Object>
    void operator()(Object *object) const {
        Free(object);
    }
};

using Bio = std::unique_ptr<BIO, Freer<BIO_free_all>>;
using Key = std::unique_ptr<EVP_PKEY, Freer<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freer<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Freer<X509_EXTENSION_free>>;

using Extensions = std::vector<std::pair<int, std::string>>;

/// Thrown in this file only; the functions of the header return a Failure.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

void require(bool succeeded, const char *what) {
    if (!succeeded) {
        ERR_clear_error();
        throw Error(what);
    }
}

Bio reader(const std::string &pem) {
    Bio bio(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
    require(bio != nullptr, "OpenSSL has no memory");
    return bio;
}

Key readKey(const std::string &pem) {
    Key key(PEM_read_bio_PrivateKey(reader(pem).get(), nullptr, nullptr, nullptr));
    require(key != nullptr, "is not a private key in PEM");
    return key;
}

Certificate readCertificate(const std::string &pem) {
    Certificate certificate(PEM_read_bio_X509(reader(pem).get(), nullptr, nullptr, nullptr));
    require(certificate != nullptr, "is not a certificate in PEM");
    return certificate;
}

std::string textOf(const Bio &bio) {
    char *text = nullptr;
    const long length = BIO_get_mem_data(bio.get(), &text);
    return {text, static_cast<std::size_t>(length)};
}

std::string pemOf(const Certificate &certificate) {
    const Bio bio(BIO_new(BIO_s_mem()));
    require(bio != nullptr && PEM_write_bio_X509(bio.get(), certificate.get()) == 1, "cannot write PEM");
    return textOf(bio);
}

void setName(X509_NAME *name, const std::string &commonName) {
    const auto *text = reinterpret_cast<const unsigned char *>(commonName.data());
    require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8, text, static_cast<int>(commonName.size()),
                                       -1, 0) == 1,
            "the name is too long for a certificate");
}

void setSerial(X509 *certificate) {
    std::array<unsigned char, 16> bytes{};
    require(RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) == 1, "no random bytes");
    bytes[0] = static_cast<unsigned char>((bytes[0] & 0x7fU) | 0x40U); // positive, and always of this length
    const std::unique_ptr<BIGNUM, Freer<BN_free>> number(
        BN_bin2bn(bytes.data(), static_cast<int>(bytes.size()), nullptr));
    require(number && BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(certificate)) != nullptr,
            "cannot make a serial number");
}

void setTime(ASN1_TIME *field, Time time) {
    require(ASN1_TIME_set(field, std::chrono::system_clock::to_time_t(time)) != nullptr,
            "cannot set the validity");
}

Time readTime(const ASN1_TIME *field) {
    std::tm parts{};
    require(ASN1_TIME_to_tm(field, &parts) == 1, "has no validity");
    return std::chrono::system_clock::from_time_t(timegm(&parts));
}

/// Fills in everything but the issuer, and signs.
std::string finish(const Certificate &certificate, const std::string &name, const Key &own,
                   const Extensions &extensions, X509 *issuer, const Key &issuerKey) {
    X509 *made = certificate.get();
    require(X509_set_version(made, X509_VERSION_3) == 1, "OpenSSL has no memory");
    setSerial(made);
    setName(X509_get_subject_name(made), name);
    require(X509_set_issuer_name(made, X509_get_subject_name(issuer)) == 1 &&
                X509_set_pubkey(made, own.get()) == 1,
            "cannot make a certificate");
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, made, nullptr, nullptr, 0);
    for (const auto &[kind, value] : extensions) {
        const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()));
        require(extension && X509_add_ext(made, extension.get(), -1) == 1, "cannot add an extension");
    }
    require(X509_sign(made, issuerKey.get(), EVP_sha256()) > 0, "cannot sign a certificate");
    return pemOf(certificate);
}

Certificate newCertificate(Time begin, Time end) {
    Certificate certificate(X509_new());
    require(certificate != nullptr, "OpenSSL has no memory");
    setTime(X509_getm_notBefore(certificate.get()), begin);
    setTime(X509_getm_notAfter(certificate.get()), end);
    return certificate;
}

template <typename Value, typename Make>
Result<Value> attempt(const Make &make) {
    try {
        return make();
    } catch (const Error &error) {
        return Failure{error.what()};
    }
}

} // namespace

Result<std::string> newKey() {
    return attempt<std::string>([] {
        const Key key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
        const Bio bio(BIO_new(BIO_s_secmem()));
        require(key && bio &&
                    PEM_write_bio_PrivateKey(bio.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) ==
                        1,
                "OpenSSL cannot make a key");
        return textOf(bio);
    });
}

Result<std::string> authorityCertificate(const std::string &key, const std::string &name,
                                         std::chrono::hours life, Time now) {
    return attempt<std::string>([&] {
        const Key own = readKey(key);
        const Certificate certificate = newCertificate(now - tolerance, now + life);
        const Extensions extensions = {{NID_basic_constraints, "critical,CA:TRUE,pathlen:0"},
                                       {NID_key_usage, "critical,keyCertSign,cRLSign"},
                                       {NID_subject_key_identifier, "hash"}};
        return finish(certificate, name, own, extensions, certificate.get(), own);
    });
}

Result<std::string> serverCertificate(const Pair &authority, const std::string &key, const Server &server,
                                      Time now) {
    return attempt<std::string>([&] {
        const Certificate issuer = readCertificate(authority.certificate);
        const Time end = std::min<Time>(now + server.life, readTime(X509_get0_notAfter(issuer.get())));
        const Certificate certificate = newCertificate(now - tolerance, end);
        Extensions extensions = {{NID_basic_constraints, "critical,CA:FALSE"},
                                 {NID_key_usage, "critical,digitalSignature"},
                                 {NID_ext_key_usage, "serverAuth"},
                                 {NID_subject_key_identifier, "hash"},
                                 {NID_authority_key_identifier, "keyid:always"}};
        if (!server.host.empty()) {
            const bool address = Ipv4Address::parse(server.host).has_value();
            extensions.emplace_back(NID_subject_alt_name, (address ? "IP:" : "DNS:") + server.host);
        }
        return finish(certificate, server.name, readKey(key), extensions, issuer.get(),
                      readKey(authority.key));
    });
}

Result<Validity> validity(const std::string &certificate) {
    return attempt<Validity>([&] {
        const Certificate read = readCertificate(certificate);
        return Validity{readTime(X509_get0_notBefore(read.get())), readTime(X509_get0_notAfter(read.get()))};
    });
}

bool isFor(const std::string &certificate, const std::string &host) {
    const auto found = attempt<bool>([&] {
        const Certificate read = readCertificate(certificate);
        return Ipv4Address::parse(host)
                   ? X509_check_ip_asc(read.get(), host.c_str(), 0) == 1
                   : X509_check_host(read.get(), host.data(), host.size(), 0, nullptr) == 1;
    });
    return found && found.value();
}

bool belongsTo(const std::string &key, const std::string &certificate) {
    const auto found = attempt<bool>(
        [&] { return X509_check_private_key(readCertificate(certificate).get(), readKey(key).get()) == 1; });
    ERR_clear_error();
    return found && found.value();
}

bool isSignedBy(const std::string &certificate, const std::string &authority) {
    const auto found = attempt<bool>([&] {
        const Certificate issuer = readCertificate(authority);
        return X509_verify(readCertificate(certificate).get(), X509_get0_pubkey(issuer.get())) == 1;
    });
    ERR_clear_error();
    return found && found.value();
}

} // namespace quorvane::service::Pki
