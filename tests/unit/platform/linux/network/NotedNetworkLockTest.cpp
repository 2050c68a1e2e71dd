#include "platform/linux/network/NotedNetworkLock.h"

#include "UrlLoaderFixture.h"

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

class NotedNetworkLockTest : public UrlLoaderFixture {
protected:
    NotedNetworkLockTest() { m_service.apiHost = QStringLiteral("api.test"); }

    void note(const QByteArray &text) {
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    [[nodiscard]] NotedNetworkLock lock() {
        return NotedNetworkLock(m_path, m_service, m_kept, [this](const QByteArray &host) {
            m_hosts.append(host);
            return m_found;
        });
    }

    ServiceConfiguration m_service;
    std::shared_ptr<KeptAddresses> m_kept = std::make_shared<KeptAddresses>();
    QByteArrayList m_found;
    QByteArrayList m_hosts;
};

TEST_F(NotedNetworkLockTest, IsClosedWhileThereIsANote) {
    const NotedNetworkLock present = lock();
    EXPECT_FALSE(present.isClosed());
    note("");
    EXPECT_TRUE(present.isClosed());
    QFile::remove(m_path);
    EXPECT_FALSE(present.isClosed());
}

TEST_F(NotedNetworkLockTest, AddressesOfTheServiceAreForTheScript) {
    NotedNetworkLock present = lock();
    EXPECT_TRUE(present.serviceAddresses().isEmpty());
    m_found = {"192.0.2.1", "192.0.2.2"};
    present.keepServiceAddresses();
    EXPECT_EQ(m_hosts, QByteArrayList{"api.test"});
    EXPECT_EQ(present.serviceAddresses(), (QStringList{QStringLiteral("api.test:443/192.0.2.1"),
                                                       QStringLiteral("api.test:443/192.0.2.2")}));
    EXPECT_EQ(m_kept->find("api.test"), m_found);
}

TEST_F(NotedNetworkLockTest, PortOfTheServiceIsKept) {
    m_service.apiHost = QStringLiteral("api.test:8443");
    NotedNetworkLock present = lock();
    m_found = {"192.0.2.1"};
    present.keepServiceAddresses();
    EXPECT_EQ(m_hosts, QByteArrayList{"api.test"});
    EXPECT_EQ(present.serviceAddresses(), QStringList{QStringLiteral("api.test:8443/192.0.2.1")});
}

TEST_F(NotedNetworkLockTest, ALookUpThatFindsNothingKeepsWhatWasFoundBefore) {
    NotedNetworkLock present = lock();
    m_found = {"192.0.2.1"};
    present.keepServiceAddresses();
    m_found = {};
    present.keepServiceAddresses();
    EXPECT_EQ(present.serviceAddresses().size(), 1);
}

TEST_F(NotedNetworkLockTest, AServiceOverIpv6OnlyHasNoAddress) {
    m_service.apiHost = QStringLiteral("[2001:db8::1]:443");
    NotedNetworkLock present = lock();
    m_found = {"192.0.2.1"};
    present.keepServiceAddresses();
    EXPECT_TRUE(m_hosts.isEmpty());
    EXPECT_TRUE(present.serviceAddresses().isEmpty());
}

TEST_F(NotedNetworkLockTest, ANoteOfAnEarlierRunHasTheAddresses) {
    note("api.test:443/192.0.2.1\nother.test:443/192.0.2.9\napi.test:80/192.0.2.8\n"
         "api.test:443/no address\napi.test:443/2001:db8::1\napi.test:443/192.0.2.2\n\xff\n");
    const NotedNetworkLock present = lock();
    EXPECT_EQ(m_kept->find("api.test"), (QByteArrayList{"192.0.2.1", "192.0.2.2"}));
    EXPECT_TRUE(m_kept->find("other.test").isEmpty());
}

TEST_F(NotedNetworkLockTest, ANoteThatIsTooLargeIsIgnored) {
    note(QByteArray("api.test:443/192.0.2.1\n").repeated(4000));
    const NotedNetworkLock present = lock();
    EXPECT_TRUE(m_kept->find("api.test").isEmpty());
    EXPECT_TRUE(present.isClosed());
}

TEST_F(NotedNetworkLockTest, ObserverSeesTheNoteComeAndGo) {
    NotedNetworkLock present = lock();
    int changes = 0;
    present.setObserver([&changes] { ++changes; });
    note("");
    EXPECT_TRUE(spin([&changes] { return changes == 1; }));
    QFile::remove(m_path);
    EXPECT_TRUE(spin([&changes] { return changes == 2; }));
    present.setObserver({});
    note("");
    EXPECT_FALSE(spin([&changes] { return changes > 2; }, 100));
}

} // namespace

} // namespace quorvane::platform
