#include "frontend/api/ConfigurationFetch.h"

#include "fakes/TestPlatform.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/privileges/QrvCredentials.h"
#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

QByteArray contentsOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

class ConfigurationFetchTest : public testing::Test {
protected:
    ConfigurationFetchTest() {
        QrvAPI::forgetProcessWideValues();
        m_services.hardware().serial = text("SER");
        m_group->user = text("user1");
        m_group->pass = text("pass1");
        m_group->countryCode = text("DE");
        m_group->filteredIpAdressArray = QStringList{text("203.0.113.5")};
        QObject::connect(&m_fetch, &ConfigurationFetch::prepared,
                         [this] { m_events.append(text("prepared")); });
        QObject::connect(&m_fetch, &ConfigurationFetch::stored, [this] { m_events.append(text("stored")); });
        QObject::connect(&m_fetch, &ConfigurationFetch::finished,
                         [this] { m_events.append(text("finished")); });
        QObject::connect(&m_fetch, &ConfigurationFetch::failed, [this] { m_events.append(text("failed")); });
    }

    void run(const std::optional<QByteArray> &body) {
        m_services.urls().setFetchHandler([body](const QByteArray &) { return body; });
        m_fetch.start(text("Germany Berlin"), m_group, text("UDP"));
        ASSERT_TRUE(spinUntil([this] { return m_events.size() > 1; }));
        deliverQueued();
    }

    [[nodiscard]] QString folder() const { return m_services.home() + text("/Documents/Quorvane"); }

    fakes::TestPlatform m_services;
    QrvAPI m_api;
    QrvVpnDataPointer m_group = std::make_shared<QrvVpnData>();
    ConfigurationFetch m_fetch{m_api};
    QStringList m_events;
};

TEST_F(ConfigurationFetchTest, RequestByteForByte) {
    run("VPNConfig: client<br />");
    ASSERT_EQ(m_services.urls().fetches().size(), 1U);
    EXPECT_EQ(
        m_services.urls().fetches().front(),
        QByteArray("https://api.quorvane.test/?cmd=VPNC&ver=1.0.0&device=1&server=571&desiredip=203.0.113.5"
                   "&sessid=user1&&systamp=MacOS,user,mobilebox&uniqueid=SER-1.0.0&proto=UDP"));
}

TEST_F(ConfigurationFetchTest, SupersededRequestStoresAndReportsNothing) {
    m_services.background().hold();
    m_services.urls().setFetchHandler([](const QByteArray &url) -> std::optional<QByteArray> {
        return url.contains("sessid=user1") ? "VPNConfig: first<br />" : "VPNConfig: second<br />";
    });
    m_fetch.start(text("Germany Berlin"), m_group, text("UDP"));
    auto other = std::make_shared<QrvVpnData>(*m_group);
    other->user = text("user2");
    m_fetch.start(text("Japan Tokyo"), other, text("UDP"));
    EXPECT_TRUE(m_services.background().finishAt(1)); // the first request hangs
    EXPECT_TRUE(m_services.background().finishAt(0));
    EXPECT_EQ(m_events, (QStringList{text("prepared"), text("prepared"), text("stored"), text("finished")}));
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.ovpn")), QByteArray("second\n"));
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.log")), QByteArray("trying to connect Japan Tokyo\n"));
    EXPECT_EQ(m_services.preferences().string(text("vpnUsername")), text("user2"));
}

TEST_F(ConfigurationFetchTest, ResultThatWaitsForDeliveryIsSupersededToo) {
    m_services.background().hold();
    m_services.urls().setFetchHandler([](const QByteArray &) { return std::nullopt; });
    m_fetch.start(text("Germany Berlin"), m_group, text("UDP"));
    m_services.background().workAt(0);
    m_fetch.start(text("Japan Tokyo"), m_group, text("UDP"));
    m_services.background().finishAll();
    EXPECT_EQ(m_events.count(text("failed")), 1);
}

TEST_F(ConfigurationFetchTest, SuccessStoresEverythingThenReports) {
    run("VPNConfig: client<br />remote 1.2.3.4 443<br />");
    EXPECT_EQ(m_events, (QStringList{text("prepared"), text("stored"), text("finished")}));
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.ovpn")), QByteArray("client\nremote 1.2.3.4 443\n"));
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.log")), QByteArray("trying to connect Germany Berlin\n"));
    EXPECT_EQ(m_services.preferences().string(text("vpnConfigPath")), folder() + text("/qrvp.ovpn"));
    EXPECT_EQ(m_services.preferences().string(text("vpnUsername")), text("user1"));
    EXPECT_EQ(m_services.preferences().string(text("vpnPassword")), text("pass1"));
    EXPECT_EQ(m_services.preferences().string(text("countryCode")), text("DE"));
    EXPECT_EQ(QrvCredentials::sharedInstance().vpnUserName(), text("user1"));
    EXPECT_EQ(QrvCredentials::sharedInstance().vpnPassword(), text("pass1"));
    EXPECT_TRUE(m_services.logSink().lines().contains(text("Certificate is downloaded")));
}

TEST_F(ConfigurationFetchTest, LogContainsTheUserInTheAddressAndNeverThePassword) {
    run("VPNConfig: client<br />");
    const QString log = m_services.logSink().lines().join(u'\n');
    EXPECT_TRUE(log.contains(text("sessid=user1")));
    EXPECT_FALSE(log.contains(text("pass1")));
}

TEST_F(ConfigurationFetchTest, ConfigurationIsForTheOwnerOnly) {
    run("VPNConfig: client");
    EXPECT_EQ(
        QFile::permissions(folder() + text("/qrvp.ovpn")) &
            (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOwner),
        QFileDevice::Permissions());
}

TEST_F(ConfigurationFetchTest, SecondFetchReplacesTheFileAndAppendsToTheLog) {
    run("VPNConfig: one");
    m_events.clear();
    run("VPNConfig: two");
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.ovpn")), QByteArray("two"));
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.log")),
              QByteArray("trying to connect Germany Berlin\ntrying to connect Germany Berlin\n"));
}

class Refused : public ConfigurationFetchTest,
                public testing::WithParamInterface<std::optional<QByteArray>> {};

TEST_P(Refused, EndsInFailureAndStoresNothing) {
    run(GetParam());
    EXPECT_EQ(m_events, (QStringList{text("prepared"), text("failed")}));
    EXPECT_FALSE(QDir(folder()).exists());
    EXPECT_TRUE(m_services.preferences().all().isEmpty());
    const bool argumentError = GetParam() == std::optional<QByteArray>("ERR: Argument parsing error");
    EXPECT_EQ(m_services.logSink().lines().contains(text("Certificate nil")), !argumentError);
}

INSTANTIATE_TEST_SUITE_P(Cases, Refused,
                         testing::Values(std::optional<QByteArray>(), QByteArray(""),
                                         QByteArray("ERR: Argument parsing error"), QByteArray("ERR: other"),
                                         QByteArray("VPNConfig: \xff"), QByteArray("<html></html>")));

TEST_F(ConfigurationFetchTest, UserThatIsNoUrlTextIsNotSentAtAll) {
    m_group->user = text("bad user");
    run("VPNConfig: client");
    EXPECT_TRUE(m_services.urls().fetches().empty());
    EXPECT_EQ(m_events.last(), text("failed"));
}

TEST_F(ConfigurationFetchTest, UserWithAHashIsNotSentAtAll) {
    m_group->user = text("a#b");
    run("VPNConfig: client");
    EXPECT_TRUE(m_services.urls().fetches().empty());
    EXPECT_EQ(m_events.last(), text("failed"));
}

TEST_F(ConfigurationFetchTest, AbsentUserIsWrittenAsNullAndStoredAsAbsent) {
    m_group->user = QString();
    m_group->pass = QString();
    run("VPNConfig: client");
    EXPECT_TRUE(m_services.urls().fetches().front().contains("&sessid=(null)&&"));
    EXPECT_FALSE(m_services.preferences().value(text("vpnUsername")).isValid());
}

TEST_F(ConfigurationFetchTest, EveryUsableAddressIsRequestedSometimes) {
    m_group->filteredIpAdressArray = QStringList{text("203.0.113.5"), text("203.0.113.6")};
    for (int i = 0; i < 60; ++i) {
        m_events.clear();
        run(std::nullopt);
    }
    int first = 0;
    for (const QByteArray &url : m_services.urls().fetches()) {
        first += url.contains("desiredip=203.0.113.5&") ? 1 : 0;
    }
    EXPECT_GT(first, 0);
    EXPECT_LT(first, 60);
}

TEST_F(ConfigurationFetchTest, RequestAndWritingAreOnePieceOfBackgroundWork) {
    m_services.background().hold();
    m_services.urls().setFetchHandler([](const QByteArray &) { return "VPNConfig: x"; });
    m_fetch.start(text("t"), m_group, text("TCP"));
    EXPECT_TRUE(m_services.urls().fetches().empty());
    ASSERT_EQ(m_services.background().pending(), 1U);
    m_services.background().workAt(0);
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.ovpn")), QByteArray("x"));
    EXPECT_EQ(m_events, QStringList{text("prepared")});
    m_services.background().finishAll();
    EXPECT_EQ(m_events.last(), text("finished"));
}

TEST_F(ConfigurationFetchTest, UnwritableFolderIsIgnoredAndTheTunnelIsStillStarted) {
    ASSERT_TRUE(QDir().mkpath(m_services.home() + text("/Documents")));
    QFile obstacle(folder()); // a file where the folder should be
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();
    run("VPNConfig: client");
    EXPECT_TRUE(m_events.contains(text("stored")));
}

TEST_F(ConfigurationFetchTest, ResultAfterTheFetchWasDestroyedIsDropped) {
    m_services.background().hold();
    m_services.urls().setFetchHandler([](const QByteArray &) { return "VPNConfig: x"; });
    int storedSignals = 0;
    {
        ConfigurationFetch shortLived(m_api);
        QObject::connect(&shortLived, &ConfigurationFetch::stored, [&storedSignals] { ++storedSignals; });
        shortLived.start(text("t"), m_group, text("TCP"));
    }
    m_services.background().finishAll();
    EXPECT_EQ(storedSignals, 0);
}

} // namespace

} // namespace quorvane
