#include "setup/Certificates.h"

#include "TemporaryFolder.h"
#include "core/ClientAuthority.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

constexpr std::chrono::hours day{24};

class CertificatesTest : public testing::Test {
protected:
    /// The names of the files that a run after so many days writes.
    std::vector<std::string> run(int days) {
        FileStore files = test::ownFiles();
        Certificates certificates(m_places, files, std::chrono::system_clock::now() + days * day);
        m_api = certificates.provideApi(m_record);
        EXPECT_TRUE(certificates.provideVpn());
        std::vector<std::string> names;
        for (const std::string &path : files.written()) {
            names.push_back(path.substr(m_places.folder.size() + 1));
        }
        return names;
    }

    [[nodiscard]] std::string text(const std::string &name) const {
        return FileStore::text(m_places.file(name)).value();
    }

    test::TemporaryFolder m_folder;
    Places m_places = m_folder.places();
    SetupRecord m_record{"vpn.example.org", "", ""};
    Result<> m_api;
};

using Names = std::vector<std::string>;

TEST_F(CertificatesTest, AreMadeOnceAndRenewedNearTheirEnd) {
    EXPECT_EQ(run(0), (Names{"api-ca.key", "api-ca.crt", "api.key", "api.crt", "vpn-ca.key", "vpn-ca.crt",
                             "vpn.key", "vpn.crt"}));
    EXPECT_EQ(run(0), Names{});
    EXPECT_EQ(run(59), Names{});
    EXPECT_EQ(run(61), Names{"api.crt"});
    EXPECT_EQ(run(3650 - 100), (Names{"api.crt", "vpn.crt"}));
}

TEST_F(CertificatesTest, AreMadeAnewForAnotherName) {
    run(0);
    EXPECT_TRUE(Pki::isFor(text("api.crt"), "vpn.example.org"));
    m_record.name = "192.0.2.10";
    EXPECT_EQ(run(0), Names{"api.crt"});
    EXPECT_TRUE(Pki::isFor(text("api.crt"), "192.0.2.10"));
    m_record.name = std::string(60, 'a') + ".example.org";
    EXPECT_EQ(run(0), Names{"api.crt"});
    EXPECT_TRUE(Pki::isFor(text("api.crt"), m_record.name));
}

TEST_F(CertificatesTest, WhatIsMissingAfterAnInterruptedRunIsMade) {
    run(0);
    const std::string key = text("api.key");
    std::filesystem::remove(m_places.file("api.crt"));
    std::filesystem::remove(m_places.file("vpn-ca.crt"));
    EXPECT_EQ(run(0), (Names{"api.crt", "vpn-ca.crt"}));
    EXPECT_EQ(text("api.key"), key);
}

TEST_F(CertificatesTest, AnAuthorityWithAnotherKeyIsAFailureThatChangesNothing) {
    run(0);
    std::filesystem::copy_file(m_places.file("vpn-ca.key"), m_places.file("api-ca.key"),
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(run(61), Names{});
    EXPECT_FALSE(m_api);
}

TEST_F(CertificatesTest, ThoseOfAnotherProgramAreCopiedWhenTheyAreUsable) {
    run(0);
    m_record.tlsCertificate = m_places.file("api.crt");
    m_record.tlsKey = m_places.file("api.key");
    EXPECT_EQ(run(0), Names{"given.pem"});
    EXPECT_TRUE(Pki::belongsTo(text("given.pem"), text("given.pem")));
    EXPECT_EQ(run(61), Names{}) << "they are renewed by the other program";
    EXPECT_TRUE(m_api);
    run(91);
    EXPECT_FALSE(m_api) << "expired";
    m_record.name = "other.example.org";
    run(0);
    EXPECT_FALSE(m_api);
    m_record = {"vpn.example.org", m_places.file("api.crt"), m_places.file("vpn.key")};
    run(0);
    EXPECT_FALSE(m_api) << "another key";
    m_record.tlsKey = "/nonexistent";
    EXPECT_EQ(run(0), Names{});
    EXPECT_FALSE(m_api);
}

TEST_F(CertificatesTest, KeysStay) {
    FileStore files = test::ownFiles();
    Certificates certificates(m_places, files, std::chrono::system_clock::now());
    ASSERT_TRUE(certificates.provideKeys());
    const std::string users = text("user.keys");
    const std::string control = text("control.key");
    const std::string authority = text("client-authority.pem");
    ASSERT_TRUE(certificates.provideKeys());
    EXPECT_EQ(text("user.keys"), users);
    EXPECT_EQ(text("control.key"), control);
    EXPECT_EQ(text("client-authority.pem"), authority);
    const auto read = ClientAuthority::load(m_places.file("client-authority.pem"));
    EXPECT_TRUE(read && read.value().canSign());
    const auto checking = ClientAuthority::parse(text("client-authority.crt"));
    ASSERT_TRUE(checking);
    EXPECT_FALSE(checking.value().canSign()) << "a gateway needs no key of it";
    EXPECT_EQ(checking.value().certificates(), read.value().certificates());
    EXPECT_EQ(users.size(), 65U);
}

TEST_F(CertificatesTest, TheRecordIsKept) {
    EXPECT_FALSE(SetupRecord::load(m_places));
    FileStore files = test::ownFiles();
    m_record = {"vpn.example.org", "/c", "/k"};
    ASSERT_TRUE(m_record.save(m_places, files));
    const SetupRecord loaded = SetupRecord::load(m_places).value();
    EXPECT_EQ(loaded.name, "vpn.example.org");
    EXPECT_EQ(loaded.tlsCertificate, "/c");
    EXPECT_EQ(loaded.tlsKey, "/k");
    ASSERT_TRUE(files.put(m_places.file("setup.json"), "[]", Readers::All));
    EXPECT_FALSE(SetupRecord::load(m_places));
}

} // namespace

} // namespace quorvane::service
