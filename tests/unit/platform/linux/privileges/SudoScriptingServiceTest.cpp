#include "platform/linux/privileges/SudoScriptingService.h"
#include "tests/unit/platform/linux/Sandbox.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

using platform::ScriptingService;
using platform::ScriptResult;
using platform::SudoScriptingService;

const QString absent = QStringLiteral("\x01");

/// Lines as administrator, started by one of the sandbox's accounts.
class AdministratorLine : public ::testing::Test {
protected:
    void SetUp() override {
        if (!sandbox::hasAccounts()) {
            GTEST_SKIP() << "needs root and its own namespaces for temporary accounts";
        }
        // The accounts may have no access to the build folder.
        QDir().mkpath(QStringLiteral("/run/tests/Resources"));
        ASSERT_TRUE(QFile::exists(m_helper) || QFile::copy(QStringLiteral(SCRIPTING_HELPER), m_helper));
    }

    void TearDown() override {
        if (!m_rulesBefore.isNull()) {
            setRules(m_rulesBefore);
        }
    }

    static void setRules(const QByteArray &rules) {
        QFile file(QStringLiteral("/etc/pam.d/common-auth"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(rules), rules.size());
    }

    /// Puts rules of PAM around those for the password, for sudo and su, until the end of the test.
    void surroundRules(const QByteArray &first, const QByteArray &last) {
        QFile file(QStringLiteral("/etc/pam.d/common-auth"));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        m_rulesBefore = file.readAll();
        setRules(first + m_rulesBefore + last);
    }

    static void makeProgram(const QString &path, const QByteArray &text) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        ASSERT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    }

    static void runTool(const QString &program, const QStringList &arguments) {
        ASSERT_EQ(QProcess::execute(program, arguments), 0);
    }

    /// Starts the helper as the account.
    void start(QProcess &process, const QString &caller, const QString &line, const QString &name,
               const QString &password) const {
        if (caller == QStringLiteral("root")) {
            process.start(m_helper, {m_resources, m_longSilence});
        } else {
            process.start(QStringLiteral("setpriv"),
                          {QStringLiteral("--reuid=") + caller, QStringLiteral("--regid=") + caller,
                           QStringLiteral("--init-groups"), QStringLiteral("--"), m_helper, m_resources,
                           m_longSilence});
        }
        process.write(line.toUtf8() + '\0' + name.toUtf8() + '\0' + password.toUtf8() + '\0');
        process.closeWriteChannel();
    }

    static ScriptResult finish(QProcess &process) {
        EXPECT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
        const QByteArrayList fields = process.readAllStandardOutput().split('\0');
        ScriptResult result;
        result.succeeded = fields.value(0) == "1";
        result.text = QString::fromUtf8(fields.value(1));
        if (fields.value(2) != "-") {
            result.errorNumber = fields.value(2).toInt();
        }
        result.errorMessage = QString::fromUtf8(fields.value(3));
        result.otherQuestion = QString::fromUtf8(fields.value(4));
        return result;
    }

    ScriptResult run(const QString &caller, const QString &line, const QString &name,
                     const QString &password) const {
        QProcess process;
        start(process, caller, line, name, password);
        return finish(process);
    }

    static void setPassword(const QString &account, const QString &password) {
        QProcess process;
        process.start(QStringLiteral("chpasswd"), QStringList());
        process.write((account + u':' + password + u'\n').toUtf8());
        process.closeWriteChannel();
        ASSERT_TRUE(process.waitForFinished());
        ASSERT_EQ(process.exitCode(), 0);
    }

    static constexpr char identity[] = "id -un";
    QString m_longSilence = QStringLiteral("120000");
    QByteArray m_rulesBefore;
    const QString m_helper = QStringLiteral("/run/tests/helper");
    const QString m_resources = QStringLiteral("/run/tests/Resources");
    const QString m_ada = QStringLiteral("ada");
    const QString m_adaPassword = QStringLiteral("ada pw");
    const QString m_joe = QStringLiteral("joe");
    const QString m_norm = QStringLiteral("norm");
    const QString m_root = QStringLiteral("root");
    const QString m_idCommand = QString::fromLatin1(identity);
};

::testing::AssertionResult resultOf(bool fits, const ScriptResult &result) {
    return (fits ? ::testing::AssertionSuccess() : ::testing::AssertionFailure())
           << (result.succeeded ? "succeeded" : "failed") << ", text \"" << result.text.toStdString()
           << "\", number " << result.errorNumber.value_or(0) << ", message \""
           << result.errorMessage.toStdString() << '"';
}

/// Whether the line `id -un` ran as root.
::testing::AssertionResult becameRoot(const ScriptResult &result) {
    return resultOf(result.succeeded && result.text == QStringLiteral("root"), result);
}

::testing::AssertionResult wasRefused(const ScriptResult &result) {
    return resultOf(!result.succeeded && result.errorNumber == ScriptingService::refused, result);
}

::testing::AssertionResult hadWrongPassword(const ScriptResult &result) {
    return resultOf(!result.succeeded && result.errorNumber == 1 && !result.errorMessage.isEmpty(), result);
}

TEST_F(AdministratorLine, TheUsersOwnAccount) {
    EXPECT_TRUE(becameRoot(run(m_ada, m_idCommand, m_ada, m_adaPassword)));
}

TEST_F(AdministratorLine, AnotherAdministrator) {
    EXPECT_TRUE(becameRoot(run(m_joe, m_idCommand, m_ada, m_adaPassword)));
}

TEST_F(AdministratorLine, RootByName) {
    EXPECT_TRUE(becameRoot(run(m_joe, m_idCommand, m_root, QStringLiteral("rootpw"))));
}

TEST_F(AdministratorLine, RequestedByRoot) {
    EXPECT_TRUE(becameRoot(run(m_root, m_idCommand, m_ada, m_adaPassword)));
    EXPECT_TRUE(becameRoot(run(m_root, m_idCommand, m_root, QStringLiteral("rootpw"))));
}

TEST_F(AdministratorLine, FullNameInsteadOfLogin) {
    EXPECT_TRUE(becameRoot(run(m_joe, m_idCommand, QStringLiteral("Ada Admin"), m_adaPassword)));
    EXPECT_TRUE(becameRoot(run(m_ada, m_idCommand, QStringLiteral("Ada Admin"), m_adaPassword)));
}

TEST_F(AdministratorLine, WrongPasswordIsNotARefusal) {
    EXPECT_TRUE(hadWrongPassword(run(m_ada, m_idCommand, m_ada, QStringLiteral("no"))));
    EXPECT_TRUE(hadWrongPassword(run(m_joe, m_idCommand, m_ada, QStringLiteral("no"))));
    EXPECT_TRUE(hadWrongPassword(run(m_joe, m_idCommand, m_root, QStringLiteral("no"))));
    EXPECT_TRUE(hadWrongPassword(run(m_root, m_idCommand, m_ada, QStringLiteral("no"))));
    EXPECT_TRUE(hadWrongPassword(run(m_root, m_idCommand, m_root, QStringLiteral("no"))));
}

TEST_F(AdministratorLine, WrongPasswordHasAPlainMessage) {
    EXPECT_EQ(run(m_ada, m_idCommand, m_ada, QStringLiteral("no")).errorMessage,
              QStringLiteral("Sorry, try again."));
}

TEST_F(AdministratorLine, WrongPasswordCostsOneAttempt) {
    // sudo would prompt three times. Each of its prompts runs the counter.
    makeProgram(QStringLiteral("/run/tests/counter"), "#!/bin/sh\necho x >>/run/tests/attempts\n");
    QFile rules(QStringLiteral("/etc/pam.d/sudo"));
    ASSERT_TRUE(rules.open(QIODevice::ReadWrite));
    const QByteArray before = rules.readAll();
    rules.seek(0);
    rules.write("auth optional pam_exec.so seteuid quiet /run/tests/counter\n" + before);
    rules.close();
    QFile log(QStringLiteral("/run/tests/attempts"));
    EXPECT_TRUE(hadWrongPassword(run(m_joe, m_idCommand, m_ada, QStringLiteral("no"))));
    EXPECT_FALSE(log.exists()) << "su refused the password, but sudo was started";
    EXPECT_TRUE(hadWrongPassword(run(m_ada, m_idCommand, m_ada, QStringLiteral("no"))));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_LE(log.readAll().count('x'), 2) << "more than one attempt and the empty one that ends it";
    ASSERT_TRUE(rules.open(QIODevice::WriteOnly | QIODevice::Truncate));
    rules.write(before);
}

/// Whether the attempt ended because of this question.
::testing::AssertionResult wasAsked(const ScriptResult &result, const QByteArray &question) {
    const QString words = QString::fromUtf8(question);
    return resultOf(!result.succeeded && result.errorNumber == 1 && result.otherQuestion == words &&
                        result.errorMessage.contains(words),
                    result)
           << ", question \"" << result.otherQuestion.toStdString() << '"';
}

/// Every way to become root; the first is the caller, the others are account and password.
const QList<QStringList> &ways() {
    static const QList<QStringList> all{
        {QStringLiteral("ada"), QStringLiteral("ada"), QStringLiteral("ada pw")},
        {QStringLiteral("joe"), QStringLiteral("ada"), QStringLiteral("ada pw")},
        {QStringLiteral("root"), QStringLiteral("ada"), QStringLiteral("ada pw")},
        {QStringLiteral("joe"), QStringLiteral("root"), QStringLiteral("rootpw")},
        {QStringLiteral("root"), QStringLiteral("root"), QStringLiteral("rootpw")}};
    return all;
}

TEST_F(AdministratorLine, QuestionBeforeThePasswordIsNotAnsweredWithIt) {
    // The first module asks in its own words; the second one records what was answered.
    makeProgram(QStringLiteral("/run/tests/recorder"), "#!/bin/sh\ntr -d '\\000' >>/run/tests/answers\n");
    surroundRules("auth optional pam_ftp.so\n"
                  "auth optional pam_exec.so expose_authtok seteuid quiet /run/tests/recorder\n",
                  {});
    for (const QStringList &way : ways()) {
        const QByteArray question = "Password required for " + way[1].toUtf8() + '.';
        EXPECT_TRUE(wasAsked(run(way[0], m_idCommand, way[1], way[2]), question)) << way[0].toStdString();
    }
    QFile answers(QStringLiteral("/run/tests/answers"));
    EXPECT_TRUE(!answers.open(QIODevice::ReadOnly) || answers.readAll().isEmpty());
}

TEST_F(AdministratorLine, SecondQuestionIsNotAnswered) {
    // Its words end like those of a prompt for the password.
    surroundRules({}, "auth required pam_stress.so\n");
    for (const QStringList &way : ways()) {
        if (way[1] == m_root) {
            continue; // the module asks root nothing
        }
        EXPECT_TRUE(wasAsked(run(way[0], m_idCommand, way[1], way[2]), "STRESS Password:"))
            << way[0].toStdString();
    }
}

TEST_F(AdministratorLine, ExpiredPasswordIsNotChanged) {
    for (const QString &account : {m_ada, m_root}) {
        runTool(QStringLiteral("chage"), {QStringLiteral("-d"), QStringLiteral("0"), account});
    }
    for (const QStringList &way : ways()) {
        EXPECT_TRUE(wasAsked(run(way[0], m_idCommand, way[1], way[2]), "Current password:"))
            << way[0].toStdString();
    }
    for (const QString &account : {m_ada, m_root}) {
        runTool(QStringLiteral("chage"), {QStringLiteral("-d"), QStringLiteral("2026-01-01"), account});
    }
    for (const QStringList &way : ways()) {
        EXPECT_TRUE(becameRoot(run(way[0], m_idCommand, way[1], way[2]))) << "the passwords are the same";
    }
}

TEST_F(AdministratorLine, SecondQuestionInTheWordsOfThePromptIsNotAnsweredEither) {
    // sudo shows its own prompt for both, so this reads like a wrong password.
    surroundRules({}, "auth required pam_userdb.so db=/run/tests/none\n");
    for (const QStringList &way : ways()) {
        EXPECT_FALSE(run(way[0], m_idCommand, way[1], way[2]).succeeded) << way[0].toStdString();
    }
}

TEST_F(AdministratorLine, QuestionWithoutWordsEndsAfterALongSilence) {
    surroundRules("auth optional pam_exec.so seteuid quiet /bin/sleep 1\n", {});
    EXPECT_TRUE(becameRoot(run(m_ada, m_idCommand, m_ada, m_adaPassword))) << "a short silence ends nothing";
    m_longSilence = QStringLiteral("500");
    EXPECT_FALSE(run(m_ada, m_idCommand, m_ada, m_adaPassword).succeeded);
}

TEST_F(AdministratorLine, AccountWithoutRightsIsRefused) {
    EXPECT_TRUE(wasRefused(run(m_norm, m_idCommand, m_norm, QStringLiteral("normpw"))));
    EXPECT_TRUE(wasRefused(run(m_joe, m_idCommand, m_norm, QStringLiteral("normpw"))));
    EXPECT_TRUE(wasRefused(run(m_root, m_idCommand, m_norm, QStringLiteral("normpw"))));
}

TEST_F(AdministratorLine, AccountWithOtherRightsOnlyIsRefused) {
    QFile rule(QStringLiteral("/etc/sudoers.d/norm"));
    ASSERT_TRUE(rule.open(QIODevice::WriteOnly));
    rule.write("norm ALL=(ALL) /bin/ls\n");
    rule.close();
    EXPECT_TRUE(wasRefused(run(m_norm, m_idCommand, m_norm, QStringLiteral("normpw"))));
    EXPECT_TRUE(rule.remove());
}

TEST_F(AdministratorLine, AccountWithoutAShellIsRefused) {
    EXPECT_TRUE(wasRefused(run(m_joe, m_idCommand, QStringLiteral("nologin"), QStringLiteral("nologinpw"))));
}

TEST_F(AdministratorLine, UnknownAndAbsentNamesAndPasswordsAreRefused) {
    EXPECT_TRUE(wasRefused(run(m_joe, m_idCommand, QStringLiteral("no-such-account"), m_adaPassword)));
    EXPECT_TRUE(wasRefused(run(m_joe, m_idCommand, QStringLiteral("-c"), m_adaPassword)));
    EXPECT_TRUE(wasRefused(run(m_joe, m_idCommand, QStringLiteral("--login"), m_adaPassword)));
    EXPECT_TRUE(wasRefused(run(m_joe, m_idCommand, QString(), m_adaPassword)));
    EXPECT_TRUE(wasRefused(run(m_joe, m_idCommand, absent, m_adaPassword)));
    EXPECT_TRUE(wasRefused(run(m_joe, m_idCommand, m_ada, absent)));
}

TEST_F(AdministratorLine, EmptyPasswordIsNotAccepted) {
    EXPECT_FALSE(run(m_ada, m_idCommand, m_ada, QString()).succeeded);
    EXPECT_FALSE(run(m_joe, m_idCommand, m_ada, QString()).succeeded);
}

TEST_F(AdministratorLine, AnyPasswordOfOneLineWorks) {
    const QStringList passwords{QStringLiteral("a\"b'c"),      QStringLiteral("back\\slash\\n\\tx"),
                                QStringLiteral(" blank s "),   QStringLiteral("pässwörd-ключ-😀"),
                                QStringLiteral("-n"),          QStringLiteral("$(id) ; | # % `id`"),
                                QString(250, QLatin1Char('p'))};
    for (const QString &password : passwords) {
        setPassword(QStringLiteral("ada"), password);
        EXPECT_TRUE(becameRoot(run(m_ada, m_idCommand, m_ada, password)) << password.toStdString());
        EXPECT_TRUE(becameRoot(run(m_joe, m_idCommand, m_ada, password)) << password.toStdString());
    }
    setPassword(QStringLiteral("ada"), m_adaPassword);
}

TEST_F(AdministratorLine, PasswordOfTwoLinesIsWrongAndNotSent) {
    EXPECT_TRUE(hadWrongPassword(run(m_ada, m_idCommand, m_ada, m_adaPassword + QStringLiteral("\nada pw"))));
}

TEST_F(AdministratorLine, StatusAndOutputsAreReturned) {
    for (const QString &caller : {m_ada, m_joe, m_root}) {
        const ScriptResult failed =
            run(caller, QStringLiteral("echo out; echo 'a\"b' >&2; exit 7"), m_ada, m_adaPassword);
        EXPECT_FALSE(failed.succeeded);
        EXPECT_EQ(failed.errorNumber, 7);
        EXPECT_EQ(failed.errorMessage, QStringLiteral("a\"b"));
        const ScriptResult fine =
            run(caller, QStringLiteral("printf '%s\\n' \"a'b\\\\c\" \\$x"), m_ada, m_adaPassword);
        EXPECT_EQ(fine.text, QStringLiteral("a'b\\c\n$x"));
    }
}

TEST_F(AdministratorLine, LineHasNoInputResourcesFirstAndTheCaller) {
    for (const QString &caller : {m_ada, m_joe, m_root}) {
        const ScriptResult result =
            run(caller,
                QStringLiteral("cat; printf %s \"${PATH%%:*}|$LC_ALL|"
                               "$(getent passwd \"$QUORVANE_CALLER\" | cut -d: -f1)\""),
                m_ada, m_adaPassword);
        EXPECT_EQ(result.text, QStringLiteral("/run/tests/Resources|C|") + caller)
            << "the user who calls, not the administrator";
    }
}

TEST_F(AdministratorLine, WithoutAPasswordRuleTheLineStillGetsNoInput) {
    QFile rule(QStringLiteral("/etc/sudoers.d/zz-ada"));
    ASSERT_TRUE(rule.open(QIODevice::WriteOnly));
    rule.write("ada ALL=(ALL) NOPASSWD: ALL\n");
    rule.close();
    EXPECT_EQ(run(m_ada, QStringLiteral("cat; echo end"), m_ada, m_adaPassword).text, QStringLiteral("end"));
    EXPECT_EQ(run(m_joe, QStringLiteral("cat; echo end"), m_ada, m_adaPassword).text, QStringLiteral("end"));
    EXPECT_TRUE(rule.remove());
}

TEST_F(AdministratorLine, DoesNotWaitForABackgroundChildAndDoesNotKillIt) {
    for (const QString &caller : {m_ada, m_joe, m_root}) {
        const ScriptResult result = run(caller, QStringLiteral("sleep 60 & echo $!"), m_ada, m_adaPassword);
        const pid_t left = result.text.toInt();
        ASSERT_GT(left, 1) << result.errorMessage.toStdString();
        EXPECT_EQ(kill(left, SIGKILL), 0) << "the child was killed, or the call waited until it had ended";
    }
}

/// The data that every process of the namespace shows.
QByteArray everythingVisible() {
    QByteArray seen;
    const QStringList processes =
        QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    for (const QString &process : processes) {
        for (const char *name : {"cmdline", "environ"}) {
            QFile file(QStringLiteral("/proc/%1/%2").arg(process, QLatin1String(name)));
            if (file.open(QIODevice::ReadOnly)) {
                seen += file.readAll();
            }
        }
    }
    return seen;
}

TEST_F(AdministratorLine, PasswordIsNeverVisible) {
    const QString secret = QStringLiteral("visible-Secret-1");
    setPassword(QStringLiteral("ada"), secret);
    // The right password while the line runs, a wrong one during sudo's delay.
    for (const QString &password : QStringList{secret, secret + QStringLiteral("x")}) {
        for (const QString &caller : {m_ada, m_joe, m_root}) {
            QProcess process;
            start(process, caller, QStringLiteral("sleep 0.7"), m_ada, password);
            QByteArray seen;
            int looks = 0;
            while (!process.waitForFinished(5)) {
                seen += everythingVisible();
                ++looks;
            }
            EXPECT_GT(looks, 2);
            EXPECT_TRUE(seen.contains("sudo")) << "no process was observed";
            EXPECT_FALSE(seen.contains(secret.toUtf8()));
        }
    }
    setPassword(QStringLiteral("ada"), m_adaPassword);
}

} // namespace

} // namespace quorvane::platform
