#include "CertificateExpiry.h"

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <ctime>
#include <memory>

namespace quorvane::service {

std::optional<std::int64_t> certificateExpiry(const std::string &path) {
    const std::unique_ptr<BIO, decltype(&BIO_free)> file(BIO_new_file(path.c_str(), "r"), &BIO_free);
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(
        file ? PEM_read_bio_X509(file.get(), nullptr, nullptr, nullptr) : nullptr, &X509_free);
    ERR_clear_error(); // what is left there would be taken for an error of a TLS connection
    std::tm parts{};
    if (!certificate || ASN1_TIME_to_tm(X509_get0_notAfter(certificate.get()), &parts) != 1) {
        return std::nullopt;
    }
    return timegm(&parts);
}

} // namespace quorvane::service
