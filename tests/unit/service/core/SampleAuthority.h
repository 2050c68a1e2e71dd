#pragma once

#include "core/ClientAuthority.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <optional>
#include <string>

namespace quorvane::service::test {

/// A new authority of clients' certificates, in a folder that ends with the object.
class SampleAuthority {
public:
    SampleAuthority() : m_authority(make()) {}

    [[nodiscard]] const ClientAuthority &authority() const { return m_authority; }

private:
    static ClientAuthority make() {
        std::string folder = std::filesystem::temp_directory_path() / "authority-XXXXXX";
        if (mkdtemp(folder.data()) == nullptr) {
            throw std::runtime_error("no folder for the authority");
        }
        auto made = ClientAuthority::loadOrMake(folder + "/authority.pem");
        std::filesystem::remove_all(folder);
        return std::move(made).value();
    }

    ClientAuthority m_authority;
};

using X509Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

/// The certificate in the block <cert>; null without one.
inline X509Certificate certificateInBlocks(const std::string &text) {
    const auto begin = text.find("<cert>\n");
    if (begin == std::string::npos) {
        return {nullptr, &X509_free};
    }
    const std::unique_ptr<BIO, decltype(&BIO_free)> bio(BIO_new_mem_buf(text.data() + begin + 7, -1),
                                                        &BIO_free);
    return {PEM_read_bio_X509(bio.get(), nullptr, nullptr, nullptr), &X509_free};
}

/// The grant of that certificate, from the variables that OpenVPN would make for it.
inline std::optional<Grant> grantInBlocks(const std::string &text) {
    const auto certificate = certificateInBlocks(text);
    if (!certificate) {
        return std::nullopt;
    }
    return grantOf([&certificate](std::string_view variable) {
        const std::string name(variable.substr(variable.rfind('_') + 1));
        char value[256] = "";
        X509_NAME_get_text_by_NID(X509_get_subject_name(certificate.get()), OBJ_sn2nid(name.c_str()), value,
                                  sizeof value);
        return std::string(value);
    });
}

} // namespace quorvane::service::test
