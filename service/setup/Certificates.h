#pragma once

#include "FileStore.h"
#include "Pki.h"
#include "ServiceFile.h"

namespace quorvane::service {

/// What the setup remembers beside the configuration, in setup.json.
struct SetupRecord {
    std::string name;           ///< by which clients reach the service
    std::string tlsCertificate; ///< file of another program; empty: the setup's own authority
    std::string tlsKey;

    static Result<SetupRecord> load(const Places &places);
    Result<> save(const Places &places, FileStore &files) const;
};

/// Makes what is missing of the two authorities, the servers' certificates and the keys, and new certificates
/// for those that are near their end or are not for the name of the record. Keys and authorities that exist
/// stay as they are.
class Certificates {
public:
    /// Nothing is owned.
    Certificates(const Places &places, FileStore &files, Pki::Time now)
        : m_places(places), m_files(files), m_now(now) {}

    /// The listener's certificate: of our own authority, or a copy of the files of another program.
    Result<> provideApi(const SetupRecord &record);
    /// Those of the VPN servers.
    Result<> provideVpn();
    /// The keys of VPN users and of tls-crypt-v2, and the authority of clients' certificates.
    Result<> provideKeys();

private:
    struct Names {
        std::string file;      ///< "api" or "vpn"
        std::string authority; ///< the authority's name
        Readers keyReaders;    ///< of the server's key
        Pki::Server server;
    };

    Result<> copyGiven(const SetupRecord &record);
    Result<> provide(const Names &names);
    template <typename Keys>
    Result<> provideKeyFile(const char *name, Readers readers);
    Result<> provideClientAuthority();
    Result<std::string> provideKey(const std::string &path, Readers readers);
    Result<Pki::Pair> provideAuthority(const Names &names);

    const Places &m_places;
    FileStore &m_files;
    Pki::Time m_now;
};

} // namespace quorvane::service
