#include "platform/ServiceConfiguration.h"

#include "ServiceConfCases.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorvane::platform {

namespace {

using platform::ServiceConfiguration;

class ServiceConfigurationTest : public ::testing::Test {
protected:
    QString file(const QString &name, const QByteArray &text) const {
        QFile target(m_folder.filePath(name));
        EXPECT_TRUE(target.open(QIODevice::WriteOnly));
        EXPECT_EQ(target.write(text), text.size());
        return target.fileName();
    }

    ServiceConfiguration of(const QByteArray &text) const {
        return ServiceConfiguration::read({file(QStringLiteral("one.conf"), text)});
    }

    /// What the script prints, and nothing but that.
    static QByteArray byTheScript(const QStringList &paths) {
        QProcess script;
        script.start(QStringLiteral("/bin/bash"), QStringList{QStringLiteral(SERVICE_CONF_SCRIPT)} + paths);
        EXPECT_TRUE(script.waitForFinished());
        EXPECT_EQ(script.exitCode(), 0);
        EXPECT_TRUE(script.readAllStandardError().isEmpty());
        return script.readAllStandardOutput();
    }

    QTemporaryDir m_folder;
};

TEST_F(ServiceConfigurationTest, ReadsEveryKey) {
    const auto read =
        of("# comment\n\n api_host = api.example.test:8443 # more\nweb_host=www.example.test\r\n"
           "reachability_host = 192.0.2.1\nca_file = /etc/quorvane/ca.crt\n");
    EXPECT_EQ(read.apiHost, QStringLiteral("api.example.test:8443"));
    EXPECT_EQ(read.webHost, QStringLiteral("www.example.test"));
    EXPECT_EQ(read.reachabilityHost, QStringLiteral("192.0.2.1"));
    EXPECT_EQ(read.caFile, QStringLiteral("/etc/quorvane/ca.crt"));
    EXPECT_TRUE(read.problems.isEmpty()) << read.problems.join(u'\n').toStdString();
}

TEST_F(ServiceConfigurationTest, LaterFilesOverrideKeyByKey) {
    const QString first = file(QStringLiteral("a"), "api_host = a.test\nweb_host = w.test\n");
    const QString second = file(QStringLiteral("b"), "api_host = b.test\n");
    const auto read =
        ServiceConfiguration::read({first, m_folder.filePath(QStringLiteral("missing")), second});
    EXPECT_EQ(read.apiHost, QStringLiteral("b.test"));
    EXPECT_EQ(read.webHost, QStringLiteral("w.test"));
    EXPECT_TRUE(read.problems.isEmpty());
}

TEST_F(ServiceConfigurationTest, HostsAreInLowerCaseAsInUrls) {
    EXPECT_EQ(of("api_host = API.Example.Test\n").apiHost, QStringLiteral("api.example.test"));
}

TEST_F(ServiceConfigurationTest, ReportsAndIgnoresWrongLines) {
    const QList<QByteArray> wrong{"api_host = https://a.test",
                                  "api_host = a.test/path",
                                  "api_host = a b",
                                  "api_host =",
                                  "api_host = 19",
                                  "api_host = a.test:0",
                                  "api_host = a.test:70000",
                                  "api_host = -a.test",
                                  "api_host = a..test",
                                  "api_host = a-.test",
                                  "api_host = a.test.",
                                  "api_host = a_b.test",
                                  "api_host = a.test:",
                                  "api_host = a.test:000443",
                                  "api_host = a.test:44a",
                                  "api_host = a.test:443:443",
                                  "api_host = [",
                                  "api_host = []",
                                  "api_host = [::1",
                                  "api_host = [::1]443",
                                  "api_host = [::1]:",
                                  "api_host = [::g]",
                                  "api_host = ::1",
                                  "api_host = " + QByteArray(64, 'a') + ".test",
                                  "web_host = user@host",
                                  "reachability_host = a.test:1",
                                  "ca_file = relative",
                                  "unknown = 1",
                                  "no line of that form",
                                  "api_host = \xC3\x28"};
    for (const QByteArray &line : wrong) {
        const auto read = of("api_host = good.test\n" + line + '\n');
        EXPECT_EQ(read.problems.size(), 1) << line.constData();
        // A file that is not text is ignored as a whole.
        const QString expected = line.contains('\xC3') ? QString() : QStringLiteral("good.test");
        EXPECT_EQ(read.apiHost, expected) << line.constData();
    }
}

TEST_F(ServiceConfigurationTest, NamesHaveTheLengthsOfTheNameSystem) {
    const QByteArray label(63, 'a');
    const QByteArray longest = label + '.' + label + '.' + label + '.' + QByteArray(61, 'a');
    EXPECT_EQ(of("api_host = " + longest + "\n").apiHost, QString::fromLatin1(longest));
    EXPECT_EQ(of("api_host = " + longest + ":1\n").apiHost, QString::fromLatin1(longest + ":1"));
    EXPECT_EQ(of("api_host = " + longest + "a\n").problems.size(), 1);
}

TEST_F(ServiceConfigurationTest, AcceptsAddressesInBrackets) {
    EXPECT_EQ(of("api_host = [2001:db8::1]:443\n").apiHost, QStringLiteral("[2001:db8::1]:443"));
}

TEST_F(ServiceConfigurationTest, ProgramAndScriptReadTheSame) {
    for (const ServiceConfCase &given : serviceConfCases()) {
        SCOPED_TRACE(given.name);
        QStringList paths;
        for (const QByteArray &text : given.files) {
            paths.append(file(QString::number(paths.size()), text));
        }
        const auto read = ServiceConfiguration::read(paths);
        EXPECT_EQ(read.webHost.toUtf8(), given.webHost);
        EXPECT_EQ(read.caFile.toUtf8(), given.caFile);
        EXPECT_EQ(byTheScript(paths), given.webHost + '\n' + given.caFile + '\n');
    }
}

TEST_F(ServiceConfigurationTest, ProgramAndScriptIgnoreWhatIsNoPlainFile) {
    const QString plain = file(QStringLiteral("plain"), "web_host = a.test\n");
    const QString other = file(QStringLiteral("other"), "web_host = b.test\n");
    const QString link = m_folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(other, link));
    const QString pipe = m_folder.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QStringList paths{plain, link, pipe, m_folder.path(), m_folder.filePath(QStringLiteral("missing"))};
    EXPECT_EQ(ServiceConfiguration::read(paths).webHost, QStringLiteral("a.test"));
    EXPECT_EQ(byTheScript(paths), "a.test\n\n");
    EXPECT_EQ(byTheScript({}), "\n\n");
}

TEST_F(ServiceConfigurationTest, ReportsTheLineOfTheProblem) {
    EXPECT_TRUE(of("\n\nbad = 1\n").problems.value(0).contains(QStringLiteral("one.conf, line 3")));
}

} // namespace

} // namespace quorvane::platform
