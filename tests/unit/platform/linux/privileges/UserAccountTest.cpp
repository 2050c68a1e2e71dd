#include "platform/UserAccount.h"
#include "platform/linux/privileges/AccountLookup.h"

#include <QByteArrayList>

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

using platform::UserAccount;

class UserAccountTest : public ::testing::Test {
protected:
    void SetUp() override { m_before = qgetenv("HOME"); }

    void TearDown() override { qputenv("HOME", m_before); }

    QByteArray m_before;
};

TEST_F(UserAccountTest, HomeComesFromTheEnvironmentWhenAbsolute) {
    qputenv("HOME", "/some/where/");
    EXPECT_EQ(UserAccount::current().home, QStringLiteral("/some/where"));
    EXPECT_EQ(UserAccount::current().library(), QStringLiteral("/some/where/Library"));
}

TEST_F(UserAccountTest, ElseFromTheAccountDatabase) {
    const QString expected = QString::fromUtf8(getpwuid(getuid())->pw_dir);
    for (const char *value : {"", "relative", "./x"}) {
        qputenv("HOME", value);
        EXPECT_EQ(UserAccount::current().home, expected);
    }
}

TEST_F(UserAccountTest, NamesAreThoseOfTheDatabase) {
    const passwd *entry = getpwuid(getuid());
    const QString fullName = QString::fromUtf8(entry->pw_gecos).section(u',', 0, 0);
    EXPECT_EQ(UserAccount::current().login, QString::fromUtf8(entry->pw_name));
    EXPECT_EQ(UserAccount::current().fullName,
              fullName.isEmpty() ? QString::fromUtf8(entry->pw_name) : fullName);
}

TEST(AccountLookupTest, FindsByLoginThenByFullName) {
    ASSERT_TRUE(platform::findAccount("root"));
    EXPECT_EQ(platform::findAccount("root")->id, 0U);
    const QByteArray fullName = QByteArray(getpwnam("daemon")->pw_gecos).split(',').first();
    EXPECT_EQ(platform::findAccount(fullName)->login, "daemon");
    EXPECT_FALSE(platform::findAccount(""));
    EXPECT_FALSE(platform::findAccount("no-such-account"));
    EXPECT_FALSE(platform::findAccount(QByteArray("root\0x", 6)));
}

} // namespace

} // namespace quorvane::platform
