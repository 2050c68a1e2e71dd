#include "Certificates.h"

#include "core/ClientAuthority.h"
#include "core/ControlKey.h"
#include "core/UserTokens.h"

namespace quorvane::service {

namespace {

constexpr std::chrono::hours day{24};
constexpr std::chrono::hours year = 365 * day;
constexpr std::chrono::hours authorityLife = 25 * year;
constexpr std::chrono::hours apiLife = 90 * day;
constexpr std::size_t maximumCommonName = 64;
/// An OpenVPN server reads its certificate at its start only.
constexpr std::chrono::hours vpnLife = 10 * year;

} // namespace

Result<SetupRecord> SetupRecord::load(const Places &places) {
    const std::string path = places.file("setup.json");
    const auto text = FileStore::text(path);
    if (!text) {
        return Failure{text.error()};
    }
    const auto json = nlohmann::json::parse(text.value(), nullptr, false);
    try {
        return SetupRecord{json.at("name"), json.value("tls_certificate", ""), json.value("tls_key", "")};
    } catch (const nlohmann::json::exception &) {
        return Failure{path + ": is not what the setup wrote"};
    }
}

Result<> SetupRecord::save(const Places &places, FileStore &files) const {
    nlohmann::ordered_json json = {{"name", name}};
    if (!tlsCertificate.empty()) {
        json["tls_certificate"] = tlsCertificate;
        json["tls_key"] = tlsKey;
    }
    return files.put(places.file("setup.json"), json.dump(2) + '\n', Readers::Members);
}

Result<> Certificates::provideApi(const SetupRecord &record) {
    if (!record.tlsCertificate.empty()) {
        return copyGiven(record);
    }
    const std::string common = record.name.size() <= maximumCommonName ? record.name : "Quorvane API";
    return provide({"api", "Quorvane API authority", Readers::Api, {common, record.name, apiLife}});
}

Result<> Certificates::provideVpn() {
    return provide({"vpn", "Quorvane VPN authority", Readers::Gateway, {"vpn", "", vpnLife}});
}

/// The user of the listener may not read the other program's files. Certificate and key are copied as one
/// file, so that they always belong together.
Result<> Certificates::copyGiven(const SetupRecord &record) {
    const auto certificate = FileStore::text(record.tlsCertificate);
    const auto key = FileStore::text(record.tlsKey);
    if (!certificate || !key) {
        return Failure{certificate ? key.error() : certificate.error()};
    }
    const auto validity = Pki::validity(certificate.value());
    if (!validity) {
        return Failure{record.tlsCertificate + ' ' + validity.error()};
    }
    if (!Pki::belongsTo(key.value(), certificate.value())) {
        return Failure{record.tlsKey + " does not belong to the certificate"};
    }
    if (!Pki::isFor(certificate.value(), record.name)) {
        return Failure{record.tlsCertificate + " is not for " + record.name};
    }
    if (validity.value().end <= m_now) {
        return Failure{record.tlsCertificate + " has expired"};
    }
    return m_files.put(m_places.file("given.pem"), certificate.value() + '\n' + key.value(), Readers::Api);
}

Result<std::string> Certificates::provideKey(const std::string &path, Readers readers) {
    if (!FileStore::exists(path)) {
        const auto key = Pki::newKey();
        if (!key) {
            return key;
        }
        if (auto written = m_files.put(path, key.value(), readers); !written) {
            return Failure{written.error()};
        }
    } else if (auto adopted = m_files.adopt(path, readers); !adopted) {
        return Failure{adopted.error()};
    }
    return FileStore::text(path);
}

Result<Pki::Pair> Certificates::provideAuthority(const Names &names) {
    const std::string path = m_places.file(names.file + "-ca.crt");
    const auto key = provideKey(m_places.file(names.file + "-ca.key"), Readers::Root);
    if (!key) {
        return Failure{key.error()};
    }
    if (!FileStore::exists(path)) {
        const auto made = Pki::authorityCertificate(key.value(), names.authority, authorityLife, m_now);
        if (!made) {
            return Failure{made.error()};
        }
        if (auto written = m_files.put(path, made.value(), Readers::All); !written) {
            return Failure{written.error()};
        }
    }
    auto certificate = FileStore::text(path);
    if (!certificate) {
        return Failure{certificate.error()};
    }
    if (auto adopted = m_files.adopt(path, Readers::All); !adopted) {
        return Failure{adopted.error()};
    }
    if (!Pki::belongsTo(key.value(), certificate.value())) {
        return Failure{path + " does not belong to " + m_places.file(names.file + "-ca.key")};
    }
    return Pki::Pair{std::move(certificate).value(), key.value()};
}

Result<> Certificates::provide(const Names &names) {
    const auto authority = provideAuthority(names);
    if (!authority) {
        return Failure{authority.error()};
    }
    const auto key = provideKey(m_places.file(names.file + ".key"), names.keyReaders);
    if (!key) {
        return Failure{key.error()};
    }
    const std::string path = m_places.file(names.file + ".crt");
    if (const auto present = FileStore::text(path)) {
        const std::string &text = present.value();
        const auto validity = Pki::validity(text);
        if (validity && !validity.value().isNearItsEnd(m_now) && Pki::belongsTo(key.value(), text) &&
            Pki::isSignedBy(text, authority.value().certificate) &&
            (names.server.host.empty() || Pki::isFor(text, names.server.host))) {
            return m_files.adopt(path, Readers::All);
        }
    }
    const auto made = Pki::serverCertificate(authority.value(), key.value(), names.server, m_now);
    return made ? m_files.put(path, made.value(), Readers::All) : Failure{path + ": " + made.error()};
}

Result<> Certificates::provideKeys() {
    auto provided = provideKeyFile<UserTokens>("user.keys", Readers::Members);
    if (provided) {
        provided = provideKeyFile<ControlKey>("control.key", Readers::Members);
    }
    if (provided) {
        provided = provideKeyFile<ClientAuthority>("client-authority.pem", Readers::Api);
    }
    return provided ? provideClientAuthority() : provided;
}

/// What a gateway needs of the client authority: it checks certificates, and signs none.
Result<> Certificates::provideClientAuthority() {
    const auto text = FileStore::text(m_places.file("client-authority.pem"));
    const auto authority = text ? ClientAuthority::parse(text.value()) : Failure{text.error()};
    return authority ? m_files.put(m_places.file("client-authority.crt"), authority.value().certificates(),
                                   Readers::Members)
                     : Failure{authority.error()};
}

template <typename Keys>
Result<> Certificates::provideKeyFile(const char *name, Readers readers) {
    const std::string path = m_places.file(name);
    if (!FileStore::exists(path)) {
        if (const auto made = Keys::loadOrMake(path); !made) {
            return Failure{made.error()};
        }
    }
    return m_files.adopt(path, readers);
}

} // namespace quorvane::service
