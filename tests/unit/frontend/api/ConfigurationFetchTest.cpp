#include "frontend/api/ConfigurationFetch.h"

#include "fakes/TestPlatform.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/privileges/QrvCredentials.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <QSemaphore>
#include <QThread>
#include <QThreadPool>
#include <atomic>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

QString text(const char *utf8) {
    return QString::fromUtf8(utf8);
}

QByteArray contentsOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

class ConfigurationFetchTest : public testing::Test {
protected:
    ConfigurationFetchTest() {
        QrvAPI::forgetProcessWideValues();
        services.hardware().serial = text("SER");
        group->user = text("user1");
        group->pass = text("pass1");
        group->countryCode = text("DE");
        group->filteredIpAdressArray = QStringList{text("203.0.113.5")};
        QObject::connect(&fetch, &ConfigurationFetch::prepared, [this] { events.append(text("prepared")); });
        QObject::connect(&fetch, &ConfigurationFetch::stored, [this] { events.append(text("stored")); });
        QObject::connect(&fetch, &ConfigurationFetch::finished, [this] { events.append(text("finished")); });
        QObject::connect(&fetch, &ConfigurationFetch::failed, [this] { events.append(text("failed")); });
    }

    ~ConfigurationFetchTest() override {
        QThreadPool::globalInstance()->waitForDone();
        deliverQueued();
    }

    void run(const std::optional<QByteArray> &body) {
        services.urls().setFetchHandler([body](const QByteArray &) { return body; });
        fetch.start(text("Germany Berlin"), group, text("UDP"));
        ASSERT_TRUE(spinUntil([this] { return events.size() > 1; }));
        deliverQueued();
    }

    [[nodiscard]] QString folder() const { return services.home() + text("/Documents/Quorvane"); }

    fakes::TestPlatform services;
    QrvAPI api;
    QrvVpnDataPointer group = std::make_shared<QrvVpnData>();
    ConfigurationFetch fetch{api};
    QStringList events;
};

TEST_F(ConfigurationFetchTest, RequestByteForByte) {
    run("VPNConfig: client<br />");
    ASSERT_EQ(services.urls().fetches().size(), 1U);
    EXPECT_EQ(
        services.urls().fetches().front(),
        QByteArray("https://api.quorvane.test/?cmd=VPNC&ver=1.0.0&device=1&server=571&desiredip=203.0.113.5"
                   "&sessid=user1&&systamp=MacOS,user,mobilebox&uniqueid=SER-1.0.0&proto=UDP"));
}

TEST_F(ConfigurationFetchTest, OfAnOvertakenRequestNothingIsStoredOrTold) {
    QSemaphore firstMayAnswer;
    services.urls().setFetchHandler([&](const QByteArray &url) -> std::optional<QByteArray> {
        if (url.contains("sessid=user1")) {
            firstMayAnswer.acquire();
            return "VPNConfig: first<br />";
        }
        return "VPNConfig: second<br />";
    });
    fetch.start(text("Germany Berlin"), group, text("UDP"));
    auto other = std::make_shared<QrvVpnData>(*group);
    other->user = text("user2");
    fetch.start(text("Japan Tokyo"), other, text("UDP"));
    ASSERT_TRUE(spinUntil([this] { return events.contains(text("finished")); }));
    firstMayAnswer.release();
    QThreadPool::globalInstance()->waitForDone();
    deliverQueued();
    EXPECT_EQ(events, (QStringList{text("prepared"), text("prepared"), text("stored"), text("finished")}));
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.ovpn")), QByteArray("second\n"));
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.log")), QByteArray("trying to connect Japan Tokyo\n"));
    EXPECT_EQ(services.preferences().string(text("vpnUsername")), text("user2"));
}

TEST_F(ConfigurationFetchTest, AResultThatWaitsForDeliveryIsOvertakenToo) {
    services.urls().setFetchHandler([](const QByteArray &) { return std::nullopt; });
    fetch.start(text("Germany Berlin"), group, text("UDP"));
    QThreadPool::globalInstance()->waitForDone();
    fetch.start(text("Japan Tokyo"), group, text("UDP"));
    QThreadPool::globalInstance()->waitForDone();
    deliverQueued();
    EXPECT_EQ(events.count(text("failed")), 1);
}

TEST_F(ConfigurationFetchTest, SuccessStoresEverythingThenTells) {
    run("VPNConfig: client<br />remote 1.2.3.4 443<br />");
    EXPECT_EQ(events, (QStringList{text("prepared"), text("stored"), text("finished")}));
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.ovpn")), QByteArray("client\nremote 1.2.3.4 443\n"));
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.log")), QByteArray("trying to connect Germany Berlin\n"));
    EXPECT_EQ(services.preferences().string(text("vpnConfigPath")), folder() + text("/qrvp.ovpn"));
    EXPECT_EQ(services.preferences().string(text("vpnUsername")), text("user1"));
    EXPECT_EQ(services.preferences().string(text("vpnPassword")), text("pass1"));
    EXPECT_EQ(services.preferences().string(text("countryCode")), text("DE"));
    EXPECT_EQ(QrvCredentials::sharedInstance().vpnUserName(), text("user1"));
    EXPECT_EQ(QrvCredentials::sharedInstance().vpnPassword(), text("pass1"));
    EXPECT_TRUE(services.logSink().lines().contains(text("Certificate is downloaded")));
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
    events.clear();
    run("VPNConfig: two");
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.ovpn")), QByteArray("two"));
    EXPECT_EQ(contentsOf(folder() + text("/qrvp.log")),
              QByteArray("trying to connect Germany Berlin\ntrying to connect Germany Berlin\n"));
}

class Refused : public ConfigurationFetchTest,
                public testing::WithParamInterface<std::optional<QByteArray>> {};

TEST_P(Refused, EndsInFailureAndStoresNothing) {
    run(GetParam());
    EXPECT_EQ(events, (QStringList{text("prepared"), text("failed")}));
    EXPECT_FALSE(QDir(folder()).exists());
    EXPECT_TRUE(services.preferences().all().isEmpty());
    const bool argumentError = GetParam() == std::optional<QByteArray>("ERR: Argument parsing error");
    EXPECT_EQ(services.logSink().lines().contains(text("Certificate nil")), !argumentError);
}

INSTANTIATE_TEST_SUITE_P(Rows, Refused,
                         testing::Values(std::optional<QByteArray>(), QByteArray(""),
                                         QByteArray("ERR: Argument parsing error"), QByteArray("ERR: other"),
                                         QByteArray("VPNConfig: \xff"), QByteArray("<html></html>")));

TEST_F(ConfigurationFetchTest, UserThatIsNoUrlTextIsNotSentAtAll) {
    group->user = text("bad user");
    run("VPNConfig: client");
    EXPECT_TRUE(services.urls().fetches().empty());
    EXPECT_EQ(events.last(), text("failed"));
}

TEST_F(ConfigurationFetchTest, UserWithAHashIsNotSentAtAll) {
    group->user = text("a#b");
    run("VPNConfig: client");
    EXPECT_TRUE(services.urls().fetches().empty());
    EXPECT_EQ(events.last(), text("failed"));
}

TEST_F(ConfigurationFetchTest, AbsentUserIsWrittenAsNullAndStoredAsAbsent) {
    group->user = QString();
    group->pass = QString();
    run("VPNConfig: client");
    EXPECT_TRUE(services.urls().fetches().front().contains("&sessid=(null)&&"));
    EXPECT_FALSE(services.preferences().value(text("vpnUsername")).isValid());
}

TEST_F(ConfigurationFetchTest, EveryUsableAddressIsAskedForSometimes) {
    group->filteredIpAdressArray = QStringList{text("203.0.113.5"), text("203.0.113.6")};
    for (int i = 0; i < 60; ++i) {
        events.clear();
        run(std::nullopt);
    }
    int first = 0;
    for (const QByteArray &url : services.urls().fetches()) {
        first += url.contains("desiredip=203.0.113.5&") ? 1 : 0;
    }
    EXPECT_GT(first, 0);
    EXPECT_LT(first, 60);
}

TEST_F(ConfigurationFetchTest, RequestRunsInTheBackgroundResultsOnTheMainThread) {
    std::atomic<QThread *> requestThread = nullptr;
    QThread *resultThread = nullptr;
    services.urls().setFetchHandler([&requestThread](const QByteArray &) {
        requestThread = QThread::currentThread();
        return std::optional<QByteArray>("VPNConfig: x");
    });
    QObject::connect(&fetch, &ConfigurationFetch::stored,
                     [&resultThread] { resultThread = QThread::currentThread(); });
    fetch.start(text("t"), group, text("TCP"));
    ASSERT_TRUE(spinUntil([&resultThread] { return resultThread != nullptr; }));
    EXPECT_NE(requestThread.load(), resultThread);
    EXPECT_EQ(resultThread, QThread::currentThread());
}

TEST_F(ConfigurationFetchTest, UnwritableFolderIsIgnoredAndTheTunnelIsStillStarted) {
    ASSERT_TRUE(QDir().mkpath(services.home() + text("/Documents")));
    QFile obstacle(folder()); // a file where the folder should be
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();
    run("VPNConfig: client");
    EXPECT_TRUE(events.contains(text("stored")));
}

TEST_F(ConfigurationFetchTest, ResultAfterTheFetchWentIsDropped) {
    std::atomic<bool> release = false;
    services.urls().setFetchHandler([&release](const QByteArray &) {
        while (!release) {
            QThread::yieldCurrentThread();
        }
        return std::optional<QByteArray>("VPNConfig: x");
    });
    int told = 0;
    {
        ConfigurationFetch shortLived(api);
        QObject::connect(&shortLived, &ConfigurationFetch::stored, [&told] { ++told; });
        shortLived.start(text("t"), group, text("TCP"));
    }
    release = true;
    QThreadPool::globalInstance()->waitForDone();
    deliverQueued();
    EXPECT_EQ(told, 0);
}

} // namespace

} // namespace quorvane
