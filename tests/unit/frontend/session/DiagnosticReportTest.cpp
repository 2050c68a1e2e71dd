#include "frontend/session/DiagnosticReport.h"

#include "fakes/TestPlatform.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/support/Preferences.h"
#include "frontend/support/TextFile.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

class DiagnosticReportTest : public testing::Test {
protected:
    DiagnosticReportTest() {
        QrvCredentials::sharedInstance().saveUserName(text("ada.admin"), text("s3cret ada.admin word"));
        Preferences::store(
            {{Preference::VpnUsername, text("VpnUser17")}, {Preference::VpnPassword, text("VpnPass99")}});
    }

    ~DiagnosticReportTest() override { QrvCredentials::sharedInstance().saveUserName({}, {}); }

    void writeLog(const char *name, const QString &content) const {
        const QString folder = m_services.home() + text("/Documents/Quorvane");
        ASSERT_TRUE(QDir().mkpath(folder));
        ASSERT_TRUE(TextFile::replace(folder + u'/' + text(name), content.toUtf8()));
    }

    fakes::TestPlatform m_services;
};

TEST_F(DiagnosticReportTest, SecretsAreMaskedWhereverTheyAre) {
    const QStringList secrets{text("ada.admin"), text("s3cret ada.admin word"), text("VpnUser17"),
                              text("VpnPass99")};
    for (const QString &secret : secrets) {
        for (const QString &form : {text("%1"), text("x%1y"), text("user='%1'"), text("%1\n%1")}) {
            const QString masked = DiagnosticReport::masked(form.arg(secret));
            EXPECT_FALSE(masked.contains(secret)) << qPrintable(secret) << " in " << qPrintable(form);
        }
    }
    EXPECT_EQ(DiagnosticReport::masked(text("pair s3cret ada.admin word.")), text("pair *****."))
        << "a password that contains the name leaves nothing of itself";
}

TEST_F(DiagnosticReportTest, AddressesKeepTheirBeginning) {
    const std::pair<const char *, const char *> cases[] = {
        {"[AF_INET]203.0.113.71:443", "[AF_INET]203.0.x.x:443"},
        {"198.51.100.10|198.51.100.11", "198.51.x.x|198.51.x.x"},
        {"HWADDR=ce:55:9a:b9:10:62", "HWADDR=ce:x"},
        {"fd71:7276:6e00::2/64 dev tun0", "fd71:x/64 dev tun0"},
        {"2001:db8:1:2:3:4:5:6", "2001:x"},
        {"2001:db8::1", "2001:x"},
        {"2026-11-23 07:16:52 OpenVPN 2.6.14", "2026-11-23 07:16:52 OpenVPN 2.6.14"},
        {"Qt: 6.4.2", "Qt: 6.4.2"},
    };
    for (const auto &[plain, masked] : cases) {
        EXPECT_EQ(DiagnosticReport::masked(text(plain)), text(masked)) << plain;
    }
}

TEST_F(DiagnosticReportTest, TheUserIsNotNamed) {
    platform::UserAccount &account = m_services.platform().account;
    account.login = text("joe");
    account.fullName = text("Joe (Q.) Public");
    EXPECT_EQ(DiagnosticReport::masked(account.home + text("/Documents/x of joe, Joe (Q.) Public; joey")),
              text("~/Documents/x of (user), (user); joey"));
    account.login = text("a");
    EXPECT_EQ(DiagnosticReport::masked(text("a route")), text("a route")) << "too short for a name";
}

TEST_F(DiagnosticReportTest, ReportHasVersionsPreferencesAndTheEndsOfTheLogs) {
    QString log;
    for (int line = 0; line < 100; ++line) {
        log += text("line %1 to 203.0.113.9\n").arg(line);
    }
    writeLog("openvpn.log", log + text("AUTH: Received control message: AUTH_FAILED\nVpnPass99\n"));
    writeLog("qrvp.log", text("connection success Germany Berlin\n"));
    const QString report = DiagnosticReport::text();
    for (const char *part :
         {"Quorvane: ", "\nQt: ", "\nSystem: ", "\nKernel: linux", "\nDesktop: ", "\nTray: ",
          "\nGlobal hot keys: ", "\nchangeIpInterval = ", "\nLast attempt: failed\n",
          "\nline 99 to 203.0.x.x\n", "\nconnection success Germany Berlin\n"}) {
        EXPECT_TRUE(report.contains(text(part))) << part << " is not in " << qPrintable(report);
    }
    for (const char *part :
         {"line 10 ", "203.0.113.9", "VpnPass99", "VpnUser17", "ada.admin", "\nun = ", "\nup = "}) {
        EXPECT_FALSE(report.contains(text(part))) << part << " is in " << qPrintable(report);
    }
}

TEST_F(DiagnosticReportTest, MissingAndHugeLogsAreNoProblem) {
    EXPECT_TRUE(DiagnosticReport::text().contains(text("Last attempt: undecided")));
    writeLog("openvpn.log", QString(100'000, u'x'));
    writeLog("qrvp.log", text("\n").repeated(100'000));
    EXPECT_LT(DiagnosticReport::text().size(), 10'000);
}

} // namespace

} // namespace quorvane
