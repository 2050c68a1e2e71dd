#include "frontend/privileges/ScriptUtil.h"

#include "fakes/TestPlatform.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/SessionReset.h"
#include "platform/SystemLog.h"
#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

using fakes::FakeScriptingService;

class ScriptUtilTest : public testing::Test {
protected:
    ScriptUtilTest() {
        QrvCredentials::sharedInstance().saveUserName(text("ada"), text("secret pw"));
        SessionReset::setTarget(&m_session, [this] { ++m_resets; });
    }

    ~ScriptUtilTest() override { SessionReset::setTarget(nullptr, {}); }

    bool run(const QString &path, const QStringList &arguments) {
        return m_script.runProcessAsAdministrator(path, arguments, m_output, m_error);
    }

    /// Sets the results of the two checks; a null text makes a check fail.
    void resolvers(const QString &ethernet, const QString &wifi) {
        m_services.scripting().setHandler([ethernet, wifi](const FakeScriptingService::Call &call) {
            const QString answer = call.line.endsWith(text("Ethernet")) ? ethernet : wifi;
            return answer.isNull() ? FakeScriptingService::failure(4, text("no such service"))
                                   : FakeScriptingService::success(answer);
        });
    }

    fakes::TestPlatform m_services;
    QObject m_session;
    int m_resets = 0;
    ScriptUtil m_script;
    QString m_output = QStringLiteral("untouched");
    QString m_error = QStringLiteral("untouched");
};

TEST_F(ScriptUtilTest, WordsAreJoinedWithSingleBlanksAndNothingIsQuoted) {
    EXPECT_TRUE(run(text("'/a b/openvpn'"), {text("--config"), text(" x"), text("\"y\""), text("&")}));
    EXPECT_EQ(m_services.scripting().calls()[0].line, text("'/a b/openvpn' --config  x \"y\" &"));
    EXPECT_EQ(m_services.scripting().calls()[0].user, text("ada"));
    EXPECT_EQ(m_services.scripting().calls()[0].password, text("secret pw"));
}

TEST_F(ScriptUtilTest, NoArgumentsLeaveOneTrailingBlank) {
    run(text("true"), {});
    EXPECT_EQ(m_services.scripting().calls()[0].line, text("true "));
}

TEST_F(ScriptUtilTest, SuccessReturnsTheOutput) {
    m_services.scripting().queueAnswer(FakeScriptingService::success(text("out")));
    EXPECT_TRUE(run(text("x"), {}));
    EXPECT_EQ(m_output, text("out"));
    EXPECT_EQ(m_error, text("untouched"));
    deliverQueued();
    EXPECT_EQ(m_resets, 0);
}

TEST_F(ScriptUtilTest, RefusalHasItsOwnMessageAndResetsTheSession) {
    m_services.scripting().queueAnswer(FakeScriptingService::failure(-128, text("whatever")));
    EXPECT_FALSE(run(text("x"), {}));
    EXPECT_EQ(m_error, text("The administrator password is required to do this."));
    EXPECT_EQ(m_output, text("untouched"));
    EXPECT_EQ(m_resets, 0); // queued on the main loop, not waited for
    deliverQueued();
    EXPECT_EQ(m_resets, 1);
}

TEST_F(ScriptUtilTest, OtherFailuresPassTheirMessageThrough) {
    m_services.scripting().queueAnswer(FakeScriptingService::failure(1, text("Sorry, try again.")));
    EXPECT_FALSE(run(text("x"), {}));
    EXPECT_EQ(m_error, text("Sorry, try again."));
    deliverQueued();
    EXPECT_EQ(m_resets, 1);
}

TEST_F(ScriptUtilTest, FailureWithoutAMessageLeavesNone) {
    m_services.scripting().queueAnswer({false, {}, std::nullopt, {}});
    EXPECT_FALSE(run(text("x"), {}));
    EXPECT_TRUE(m_error.isNull());
}

TEST_F(ScriptUtilTest, AbsentNameOrPasswordIsPassedOn) {
    for (const char *key : {"un", "up"}) {
        m_services.scripting().clear();
        QrvCredentials::sharedInstance().saveUserName(text("ada"), text("pw"));
        m_services.preferences().remove(text(key));
        EXPECT_TRUE(run(text("x"), {})); // an absent value is not empty, so the command is run
        EXPECT_EQ(m_services.scripting().calls().size(), 1U);
    }
}

TEST_F(ScriptUtilTest, ErrorLineIsWrittenAfterEveryExecution) {
    m_services.scripting().queueAnswer(FakeScriptingService::success(text("x")));
    run(text("a"), {});
    m_services.scripting().queueAnswer(FakeScriptingService::failure(1, text("ada said secret pw")));
    m_services.platform().log->setMask(&QrvCredentials::sanitizeStringByRemovingLoginAndPassword);
    run(text("b"), {});
    EXPECT_EQ(m_services.logSink().lines(),
              (QStringList{text("execute script"), text("Apple script error: (null)"), text("execute script"),
                           text("Apple script error: ***** said *****")}));
}

TEST_F(ScriptUtilTest, WithoutASessionNothingIsReset) {
    SessionReset::setTarget(nullptr, {});
    m_services.scripting().queueAnswer(FakeScriptingService::failure(1, text("no")));
    EXPECT_FALSE(run(text("x"), {}));
    SessionReset::setTarget(&m_session, [this] { ++m_resets; });
    deliverQueued();
    EXPECT_EQ(m_resets, 0);
}

TEST_F(ScriptUtilTest, BothServicesWithBothResolversPass) {
    resolvers(text("8.8.4.4\n1.1.1.1\n8.8.8.8"), text("8.8.8.8\n8.8.4.4"));
    EXPECT_TRUE(m_script.getSystemDns());
    const auto calls = m_services.scripting().calls();
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].kind, FakeScriptingService::Kind::User);
    EXPECT_EQ(calls[0].line, text("networksetup -getdnsservers Ethernet"));
    EXPECT_EQ(calls[1].line, text("networksetup -getdnsservers Wi-Fi"));
}

TEST_F(ScriptUtilTest, WirelessIsNotQueriedWhenTheWiredOneFails) {
    resolvers(text("There aren't any DNS Servers set on Ethernet."), text("8.8.8.8\n8.8.4.4"));
    EXPECT_FALSE(m_script.getSystemDns());
    EXPECT_EQ(m_services.scripting().calls().size(), 1U);
}

TEST_F(ScriptUtilTest, WirelessWithOneResolverFailsAndIsLogged) {
    resolvers(text("8.8.8.8\n8.8.4.4"), text("8.8.8.8"));
    EXPECT_FALSE(m_script.getSystemDns());
    EXPECT_EQ(m_services.logSink().lines(),
              (QStringList{text("getSystemDns"),
                           text("script: do shell script \"networksetup -getdnsservers Ethernet\" "),
                           text("error: (null)"), text("ip found 8.8.8.8"), text("ip found 8.8.4.4"),
                           text("getSystemDns"),
                           text("script: do shell script \"networksetup -getdnsservers Wi-Fi\" "),
                           text("error: (null)"), text("ip found 8.8.8.8"), text("ip not found 8.8.4.4")}));
}

TEST_F(ScriptUtilTest, FirstMissingResolverEndsTheCheck) {
    resolvers(text("8.8.4.4"), text("x"));
    EXPECT_FALSE(m_script.getEthernetDns());
    EXPECT_EQ(m_services.logSink().lines().last(), text("ip not found 8.8.8.8"));
}

TEST_F(ScriptUtilTest, LongerAddressesCount) {
    resolvers(text("18.8.8.81 8.8.4.44"), text("x"));
    EXPECT_TRUE(m_script.getEthernetDns());
}

TEST_F(ScriptUtilTest, FailingToolFailsTheCheck) {
    resolvers(QString(), text("8.8.8.8 8.8.4.4"));
    EXPECT_FALSE(m_script.getEthernetDns());
    EXPECT_TRUE(m_script.getWifiDns());
    m_services.scripting().setHandler([](const FakeScriptingService::Call &) {
        return FakeScriptingService::failure(-128, text("refused"));
    });
    EXPECT_FALSE(m_script.getWifiDns());
}

TEST_F(ScriptUtilTest, AnswerWithoutTextFailsTheCheck) {
    m_services.scripting().setHandler(
        [](const FakeScriptingService::Call &) { return FakeScriptingService::success(QString()); });
    EXPECT_FALSE(m_script.getEthernetDns());
}

/// A machine with three services; counts its lines as administrator.
class NameServersTest : public ScriptUtilTest {
protected:
    NameServersTest() {
        m_services.scripting().setHandler(
            [this](const FakeScriptingService::Call &call) { return answer(call); });
    }

    platform::ScriptResult answer(const FakeScriptingService::Call &call) {
        const QString get = text("networksetup -getdnsrestore ");
        const QString set = text("networksetup -setdnsservers ");
        if (call.line.startsWith(get)) {
            EXPECT_EQ(call.kind, FakeScriptingService::Kind::User);
            const QString words = m_servers.value(call.line.mid(get.size()));
            return words.isNull() ? FakeScriptingService::failure(4, text("unknown"))
                                  : FakeScriptingService::success(words + text("\n"));
        }
        EXPECT_EQ(call.kind, FakeScriptingService::Kind::Administrator);
        m_lines.append(call.line);
        const QString service = call.line.mid(set.size()).section(u' ', 0, 0);
        if (m_refusing.contains(service)) {
            return FakeScriptingService::failure(4, text("unknown"));
        }
        m_servers[service] = call.line.mid(set.size()).section(u' ', 1).trimmed();
        return FakeScriptingService::success(service);
    }

    [[nodiscard]] QString remembered() const { return m_services.preferences().string(text("dnsBefore")); }

    const QString m_ours = text("8.8.8.8 8.8.4.4");
    const QMap<QString, QString> m_before{{text("Ethernet"), text("empty")},
                                          {text("Wi-Fi"), text("192.168.1.1 fd00::1 automatic")},
                                          {text("AirPort"), text("9.9.9.9")}};
    QMap<QString, QString> m_servers = m_before;
    QStringList m_refusing;
    QStringList m_lines;
};

const QStringList &setLines() {
    static const QStringList lines{text("networksetup -setdnsservers Ethernet 8.8.8.8 8.8.4.4 "),
                                   text("networksetup -setdnsservers Wi-Fi 8.8.8.8 8.8.4.4 "),
                                   text("networksetup -setdnsservers AirPort 8.8.8.8 8.8.4.4 ")};
    return lines;
}

TEST_F(NameServersTest, RewriteRunsThreeLinesInOrder) {
    EXPECT_TRUE(m_script.setSystemDns());
    EXPECT_EQ(m_lines, setLines());
}

TEST_F(NameServersTest, OnlyTheThirdRewriteCounts) {
    for (const QString &failing : {text("Ethernet"), text("Wi-Fi"), text("AirPort")}) {
        m_lines.clear();
        m_refusing = QStringList{failing};
        EXPECT_EQ(m_script.setSystemDns(), failing != text("AirPort"));
        EXPECT_EQ(m_lines, setLines());
    }
    deliverQueued();
    EXPECT_EQ(m_resets, 3);
}

TEST_F(NameServersTest, RewriteLogsItsSharedOutput) {
    m_refusing = QStringList{text("AirPort")};
    m_script.setSystemDns();
    EXPECT_EQ(m_services.logSink().lines().last(), text("output: Wi-Fi"));
}

TEST_F(NameServersTest, FirstChangeRemembersWhatWasThere) {
    m_script.setSystemDns();
    EXPECT_EQ(remembered(), text("Ethernet=empty|Wi-Fi=192.168.1.1 fd00::1 automatic|AirPort=9.9.9.9"));
    m_script.setSystemDns();
    EXPECT_EQ(remembered(), text("Ethernet=empty|Wi-Fi=192.168.1.1 fd00::1 automatic|AirPort=9.9.9.9"))
        << "the second change finds our own servers";
    m_servers[text("Wi-Fi")] = text("10.0.0.1");
    m_script.setSystemDns();
    EXPECT_EQ(remembered(), text("Ethernet=empty|Wi-Fi=10.0.0.1|AirPort=9.9.9.9"))
        << "the user has changed it";
}

TEST_F(NameServersTest, ChangeThatFailsRemembersNothing) {
    m_refusing = m_before.keys();
    m_script.setSystemDns();
    EXPECT_TRUE(remembered().isNull());
}

TEST_F(NameServersTest, RestoringBringsBackEachService) {
    m_script.setSystemDns();
    m_lines.clear();
    QString problem;
    EXPECT_TRUE(ScriptUtil().restoreSystemDns(problem)); // another object, as after a restart
    EXPECT_TRUE(problem.isNull());
    EXPECT_EQ(m_lines, (QStringList{text("networksetup -setdnsservers Ethernet empty "),
                                    text("networksetup -setdnsservers Wi-Fi 192.168.1.1 fd00::1 automatic "),
                                    text("networksetup -setdnsservers AirPort 9.9.9.9 ")}));
    EXPECT_EQ(m_servers, m_before);
    EXPECT_TRUE(remembered().isNull());
    m_lines.clear();
    EXPECT_TRUE(m_script.restoreSystemDns(problem));
    EXPECT_TRUE(m_lines.isEmpty()) << "nothing is left to put back";
}

TEST_F(NameServersTest, ServiceThatCannotBeRestoredStaysRemembered) {
    m_script.setSystemDns();
    m_refusing = QStringList{text("Wi-Fi")};
    QString problem;
    EXPECT_FALSE(m_script.restoreSystemDns(problem));
    EXPECT_EQ(problem, text("unknown"));
    EXPECT_EQ(remembered(), text("Wi-Fi=192.168.1.1 fd00::1 automatic"));
}

TEST_F(NameServersTest, ServiceThatCannotBeReadIsLeftOut) {
    m_servers.remove(text("Ethernet"));
    m_servers[text("Wi-Fi")] = text("1.1.1.1; reboot");
    m_script.setSystemDns();
    EXPECT_EQ(remembered(), text("AirPort=9.9.9.9"));
}

TEST_F(NameServersTest, StoredWordsThatAreNoServersReachNoShell) {
    for (const char *words :
         {"$(reboot)", "1.1.1.1;reboot", "", "automatic", "1.1.1.1  2.2.2.2", "-x", "empty empty"}) {
        const QString stored = text("Ethernet=") + text(words) + text("|Other=9.9.9.9");
        m_services.preferences().setValues(QVariantMap{{text("dnsBefore"), QVariant(stored)}});
        QString problem;
        m_script.restoreSystemDns(problem);
    }
    EXPECT_TRUE(m_lines.isEmpty());
}

} // namespace

} // namespace quorvane
