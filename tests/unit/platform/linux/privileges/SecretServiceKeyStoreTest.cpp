#include "platform/linux/privileges/SecretServiceKeyStore.h"
#include "tests/unit/platform/linux/DesktopBus.h"

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

using platform::SecretServiceKeyStore;

const QString id = QStringLiteral("id-1");
const QString alice = QStringLiteral("alice");

// One bus for the program: the library keeps its first connection.
class SecretServiceKeyStoreTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        bus = std::make_unique<DesktopBus>();
        keyring = std::make_unique<QProcess>();
        keyring->start(QStringLiteral("gnome-keyring-daemon"),
                       {QStringLiteral("--unlock"), QStringLiteral("--components=secrets"),
                        QStringLiteral("--foreground")});
        if (!keyring->waitForStarted()) {
            return;
        }
        keyring->write("test-password");
        keyring->waitForBytesWritten();
        keyring->closeWriteChannel();
    }

    static void TearDownTestSuite() {
        keyring->kill();
        keyring->waitForFinished();
        keyring.reset();
        bus.reset();
    }

    void SetUp() override {
        if (keyring->state() == QProcess::NotRunning) {
            GTEST_SKIP() << "gnome-keyring-daemon is not installed";
        }
        ASSERT_TRUE(DesktopBus::isUp());
        // A call before that would have the bus start another, locked one.
        ASSERT_TRUE(DesktopBus::waitForName(QStringLiteral("org.freedesktop.secrets")));
    }

    void TearDown() override { store.remove(id); }

    inline static std::unique_ptr<DesktopBus> bus;
    inline static std::unique_ptr<QProcess> keyring;
    SecretServiceKeyStore store;
};

TEST_F(SecretServiceKeyStoreTest, KeepsPasswordsByIdentifier) {
    EXPECT_FALSE(store.password(id));
    const QByteArray secret = "pässwörd \"quoted\" \\ 😀";
    ASSERT_TRUE(store.add({id, alice, secret}));
    EXPECT_EQ(store.password(id), secret);
    EXPECT_FALSE(store.password(QStringLiteral("other")));
    EXPECT_EQ(store.accounts(id), QStringList{alice});
    store.remove(id);
    EXPECT_FALSE(store.password(id));
    EXPECT_EQ(store.accounts(id), QStringList());
    store.remove(id);
}

TEST_F(SecretServiceKeyStoreTest, UpdateKeepsOneItem) {
    EXPECT_FALSE(store.update({id, alice, "new"}));
    ASSERT_TRUE(store.add({id, alice, "old"}));
    ASSERT_TRUE(store.update({id, QStringLiteral("carol"), "new"}));
    EXPECT_EQ(store.password(id), "new");
    EXPECT_EQ(store.accounts(id), QStringList{QStringLiteral("carol")});
}

TEST_F(SecretServiceKeyStoreTest, ListsEveryAccountOfALabel) {
    ASSERT_TRUE(store.add({id, alice, "1"}));
    ASSERT_TRUE(store.add({id, QStringLiteral("bob"), "2"}));
    QStringList names = store.accounts(id).value_or(QStringList());
    names.sort();
    EXPECT_EQ(names, (QStringList{alice, QStringLiteral("bob")}));
}

TEST_F(SecretServiceKeyStoreTest, StandsForNothingWhenTheServiceHasGone) {
    ASSERT_TRUE(store.add({id, alice, "1"}));
    TearDownTestSuite();
    EXPECT_FALSE(store.password(id));
    EXPECT_FALSE(store.add({id, alice, "1"}));
    EXPECT_FALSE(store.update({id, alice, "1"}));
    EXPECT_FALSE(store.accounts(id));
    SetUpTestSuite();
}

} // namespace

} // namespace quorvane::platform
