#include "platform/linux/privileges/SecretServiceKeyStore.h"
#include "tests/unit/platform/linux/DesktopBus.h"

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

using platform::SecretServiceKeyStore;

const QString id = QStringLiteral("id-1");
const QString alice = QStringLiteral("alice");

// One bus for the whole program, because the library keeps its first connection.
class SecretServiceKeyStoreTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        m_bus = std::make_unique<DesktopBus>();
        m_keyring = std::make_unique<QProcess>();
        m_keyring->start(QStringLiteral("gnome-keyring-daemon"),
                         {QStringLiteral("--unlock"), QStringLiteral("--components=secrets"),
                          QStringLiteral("--foreground")});
        if (!m_keyring->waitForStarted()) {
            return;
        }
        m_keyring->write("test-password");
        m_keyring->waitForBytesWritten();
        m_keyring->closeWriteChannel();
    }

    static void TearDownTestSuite() {
        m_keyring->kill();
        m_keyring->waitForFinished();
        m_keyring.reset();
        m_bus.reset();
    }

    void SetUp() override {
        if (m_keyring->state() == QProcess::NotRunning) {
            GTEST_SKIP() << "gnome-keyring-daemon is not installed";
        }
        ASSERT_TRUE(DesktopBus::isUp());
        // An earlier call would make the bus start another, locked daemon.
        ASSERT_TRUE(DesktopBus::waitForName(QStringLiteral("org.freedesktop.secrets")));
    }

    void TearDown() override { m_store.remove(id); }

    inline static std::unique_ptr<DesktopBus> m_bus;
    inline static std::unique_ptr<QProcess> m_keyring;
    SecretServiceKeyStore m_store;
};

TEST_F(SecretServiceKeyStoreTest, StoresPasswordsByIdentifier) {
    EXPECT_FALSE(m_store.password(id));
    const QByteArray secret = "pässwörd \"quoted\" \\ 😀";
    ASSERT_TRUE(m_store.add({id, alice, secret}));
    EXPECT_EQ(m_store.password(id), secret);
    EXPECT_FALSE(m_store.password(QStringLiteral("other")));
    EXPECT_EQ(m_store.accounts(id), QStringList{alice});
    m_store.remove(id);
    EXPECT_FALSE(m_store.password(id));
    EXPECT_EQ(m_store.accounts(id), QStringList());
    m_store.remove(id);
}

TEST_F(SecretServiceKeyStoreTest, UpdateKeepsOneItem) {
    EXPECT_FALSE(m_store.update({id, alice, "new"}));
    ASSERT_TRUE(m_store.add({id, alice, "old"}));
    ASSERT_TRUE(m_store.update({id, QStringLiteral("carol"), "new"}));
    EXPECT_EQ(m_store.password(id), "new");
    EXPECT_EQ(m_store.accounts(id), QStringList{QStringLiteral("carol")});
}

TEST_F(SecretServiceKeyStoreTest, ListsEveryAccountOfALabel) {
    ASSERT_TRUE(m_store.add({id, alice, "1"}));
    ASSERT_TRUE(m_store.add({id, QStringLiteral("bob"), "2"}));
    QStringList names = m_store.accounts(id).value_or(QStringList());
    names.sort();
    EXPECT_EQ(names, (QStringList{alice, QStringLiteral("bob")}));
}

TEST_F(SecretServiceKeyStoreTest, IsEmptyWhenTheServiceHasEnded) {
    ASSERT_TRUE(m_store.add({id, alice, "1"}));
    TearDownTestSuite();
    EXPECT_FALSE(m_store.password(id));
    EXPECT_FALSE(m_store.add({id, alice, "1"}));
    EXPECT_FALSE(m_store.update({id, alice, "1"}));
    EXPECT_FALSE(m_store.accounts(id));
    SetUpTestSuite();
}

} // namespace

} // namespace quorvane::platform
