#include "frontend/privileges/QrvCredentials.h"

#include "fakes/TestPlatform.h"
#include "frontend/privileges/SessionReset.h"
#include "platform/SystemLog.h"
#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

bool isAlphaNumeric(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
}

class QrvCredentialsTest : public testing::Test {
protected:
    fakes::TestPlatform m_services;
    QrvCredentials &m_credentials = QrvCredentials::sharedInstance();
};

TEST(Scrambling, UnitsAlternateWithRandomOnesAndEndInNul) {
    for (const char *plain : {"a", "ab", "pass word", "\xC3\xBC\xF0\x9F\x98\x80\"\\"}) {
        const QString source = text(plain);
        const QString scrambled = QrvCredentials::encode(source);
        ASSERT_EQ(scrambled.size(), 2 * source.size() + 1);
        for (qsizetype i = 0; i < source.size(); ++i) {
            EXPECT_EQ(scrambled.at(2 * i), source.at(i));
            EXPECT_TRUE(isAlphaNumeric(scrambled.at(2 * i + 1)));
        }
        EXPECT_EQ(scrambled.back(), QChar(u'\0'));
        EXPECT_EQ(QrvCredentials::decode(scrambled), source);
    }
}

TEST(Scrambling, AllThreeFamiliesOfCharactersAreUsed) {
    const QString scrambled = QrvCredentials::encode(QString(2000, QChar(u'x')));
    QSet<QChar> lower;
    QSet<QChar> upper;
    QSet<QChar> digits;
    for (qsizetype i = 1; i < scrambled.size() - 1; i += 2) {
        const QChar c = scrambled.at(i);
        (c >= u'a' ? lower : c >= u'A' ? upper : digits).insert(c);
    }
    EXPECT_EQ(lower.size(), 26);
    EXPECT_EQ(upper.size(), 26);
    EXPECT_EQ(digits.size(), 10);
}

TEST(Scrambling, EmptyTextScramblesToNothing) {
    EXPECT_TRUE(QrvCredentials::encode(QString()).isNull());
    EXPECT_TRUE(QrvCredentials::encode(text("")).isNull());
}

TEST(Scrambling, FewerThanTwoUnitsUnscrambleToNothing) {
    EXPECT_TRUE(QrvCredentials::decode(QString()).isNull());
    EXPECT_TRUE(QrvCredentials::decode(text("")).isNull());
    EXPECT_TRUE(QrvCredentials::decode(text("a")).isNull());
}

TEST(Scrambling, ForeignTexts) {
    EXPECT_EQ(QrvCredentials::decode(text("ab")), text("a"));
    EXPECT_EQ(QrvCredentials::decode(text("abc")), text("a"));
    EXPECT_EQ(QrvCredentials::decode(text("abcd")), text("ac"));
    EXPECT_EQ(QrvCredentials::decode(text("abcde")), text("ac"));
}

TEST_F(QrvCredentialsTest, SavingTheAdministratorCommitsWhatIsPendingInTheSharedController) {
    auto &defaults = *m_services.platform().userDefaults;
    defaults.setAppliesImmediately(false);
    defaults.setValue(QStringLiteral("hide"), true);
    ASSERT_FALSE(m_services.preferences().boolean(QStringLiteral("hide")));
    QrvCredentials::sharedInstance().saveUserName(QStringLiteral("ada"), QStringLiteral("pw"));
    EXPECT_TRUE(m_services.preferences().boolean(QStringLiteral("hide")));
}

TEST_F(QrvCredentialsTest, PairIsStoredScrambledUnderShortKeysAndSaved) {
    m_credentials.saveUserName(text("ada"), text("ada pw"));
    const QString stored = m_services.preferences().string(text("up"));
    EXPECT_EQ(stored.size(), 13);
    EXPECT_FALSE(stored.contains(text("ada pw")));
    EXPECT_EQ(m_credentials.userName(), text("ada"));
    EXPECT_EQ(m_credentials.rootPassword(), text("ada pw"));
    EXPECT_EQ(m_services.preferences().synchronizations(), 1);
}

TEST_F(QrvCredentialsTest, NothingStoredReadsAsAbsent) {
    EXPECT_TRUE(m_credentials.userName().isNull());
    EXPECT_TRUE(m_credentials.rootPassword().isNull());
}

TEST_F(QrvCredentialsTest, EmptyTextRemovesTheStoredValue) {
    m_credentials.saveUserName(text("ada"), text("pw"));
    m_credentials.saveUserName(text("ada"), text(""));
    EXPECT_TRUE(m_credentials.rootPassword().isNull());
    EXPECT_EQ(m_credentials.userName(), text("ada"));
}

TEST_F(QrvCredentialsTest, VpnPairStaysInMemory) {
    m_credentials.saveVpnUserName(text("u"), text("p"));
    EXPECT_EQ(m_credentials.vpnUserName(), text("u"));
    EXPECT_EQ(m_credentials.vpnPassword(), text("p"));
    EXPECT_TRUE(m_services.preferences().all().isEmpty());
}

TEST_F(QrvCredentialsTest, TestListsTheResourceAsAdministrator) {
    const QString path = m_services.addResource(text("test_credentials.sh"), "#!/bin/sh\n");
    m_credentials.saveUserName(text("ada"), text("pw"));
    EXPECT_TRUE(m_credentials.credentialsIsValid());
    const auto calls = m_services.scripting().calls();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].kind, fakes::FakeScriptingService::Kind::Administrator);
    EXPECT_EQ(calls[0].line, text("ls '") + path + text("'"));
    EXPECT_EQ(calls[0].user, text("ada"));
    EXPECT_EQ(calls[0].password, text("pw"));
    EXPECT_TRUE(m_services.logSink().lines().contains(text("credentials Is Valid")));
}

TEST_F(QrvCredentialsTest, MissingResourceProducesAPathThatDoesNotExist) {
    m_credentials.saveUserName(text("ada"), text("pw"));
    m_services.scripting().queueAnswer(fakes::FakeScriptingService::failure(2, text("no such file")));
    EXPECT_FALSE(m_credentials.credentialsIsValid());
    EXPECT_EQ(m_services.scripting().calls()[0].line, text("ls '(null)'"));
    EXPECT_TRUE(m_services.logSink().lines().contains(text("credentials Is Not Valid")));
}

TEST_F(QrvCredentialsTest, PathWithAnApostropheIsNotValidAndRunsNothing) {
    QDir(m_services.home()).mkpath(text("it's/Resources"));
    QFile file(m_services.home() + text("/it's/Resources/test_credentials.sh"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    m_services.platform().bundle = std::make_unique<platform::Bundle>(m_services.home() + text("/it's"));
    m_credentials.saveUserName(text("ada"), text("pw"));
    EXPECT_FALSE(m_credentials.credentialsIsValid());
    EXPECT_TRUE(m_services.scripting().calls().empty());
    EXPECT_TRUE(m_services.logSink().lines().contains(
        text("credentials Is Not Valid: there is an apostrophe in ") + file.fileName()));
}

TEST_F(QrvCredentialsTest, AbsentPairIsPassedOnAsAbsent) {
    m_services.scripting().queueAnswer(
        fakes::FakeScriptingService::failure(platform::ScriptingService::refused, text("refused")));
    EXPECT_FALSE(m_credentials.credentialsIsValid());
    EXPECT_TRUE(m_services.scripting().calls()[0].user.isNull());
    EXPECT_TRUE(m_services.scripting().calls()[0].password.isNull());
}

TEST_F(QrvCredentialsTest, StatusOfAFinishedTaskIsLogged) {
    m_credentials.getStatus(3);
    EXPECT_EQ(m_services.logSink().lines(), QStringList{text("term stat 3")});
}

TEST_F(QrvCredentialsTest, MaskingWithoutAPairChangesNothing) {
    EXPECT_EQ(QrvCredentials::sanitizeStringByRemovingLoginAndPassword(text("ada pw")), text("ada pw"));
}

TEST_F(QrvCredentialsTest, EveryOccurrenceIsMasked) {
    m_credentials.saveUserName(text("ada"), text("pw"));
    EXPECT_EQ(QrvCredentials::sanitizeStringByRemovingLoginAndPassword(text("ada:pw ada:pw")),
              text("*****:***** *****:*****"));
}

TEST_F(QrvCredentialsTest, NameIsMaskedFirstSoAPasswordHoldingItStaysPartlyVisible) {
    m_credentials.saveUserName(text("ada"), text("x-ada-y"));
    EXPECT_EQ(QrvCredentials::sanitizeStringByRemovingLoginAndPassword(text("x-ada-y")), text("x-*****-y"));
}

TEST_F(QrvCredentialsTest, LogMasksTheAdministratorsPairAndNothingElse) {
    m_credentials.saveUserName(text("ada"), text("pw"));
    m_credentials.saveVpnUserName(text("vpnuser"), text("vpnpass"));
    m_services.platform().log->setMask(&QrvCredentials::sanitizeStringByRemovingLoginAndPassword);
    m_services.platform().log->write(text("sessid=vpnuser ada pw"));
    EXPECT_EQ(m_services.logSink().lines(), QStringList{text("sessid=vpnuser ***** *****")});
}

} // namespace

} // namespace quorvane
