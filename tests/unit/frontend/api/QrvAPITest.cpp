#include "frontend/api/QrvAPI.h"

#include "fakes/TestPlatform.h"
#include "platform/SystemLog.h"
#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QDateTime>
#include <QDir>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

class RecordingDelegate final : public QrvApiProtocol {
public:
    void qrvAnswer(QrvAPI &api) override {
        ++answers;
        lastKind = api.request().kind;
    }

    void qrvFailed(const platform::UrlError &error) override { failures.append(error.description); }

    int answers = 0;
    quint32 lastKind = 0;
    QStringList failures;
};

class QrvAPITest : public testing::Test {
protected:
    QrvAPITest() {
        QrvAPI::forgetProcessWideValues();
        m_services.hardware().serial = text("C02XYZ");
    }

    ~QrvAPITest() override { QrvAPI::forgetProcessWideValues(); }

    void postInternet(int status) { m_services.platform().notifications->post(text("inetStatus"), status); }

    /// Sends the server-list request and answers it.
    void answer(const QByteArray &body) {
        m_api.setInetConnect(true);
        ASSERT_TRUE(m_api.cmdAuth(QString()));
        ASSERT_TRUE(m_services.urls().finishNext(body));
    }

    fakes::TestPlatform m_services;
    RecordingDelegate m_delegate;
    QrvAPI m_api;
};

constexpr char baseOnWire[] =
    "https://api.quorvane.test/"
    "?cmd=MRTSL&ver=1.0.0&device=1&systamp=MacOS,user,mobilebox&uniqueid=C02XYZ-1.0.0";

TEST_F(QrvAPITest, NothingIsSentBeforeTheNetworkIsKnown) {
    m_api.initWithDelegate(&m_delegate);
    EXPECT_FALSE(m_api.cmdAuth(QString()));
    EXPECT_TRUE(m_services.urls().downloads().empty());
}

TEST_F(QrvAPITest, ServerListIsRequestedOnceWhenTheNetworkComes) {
    m_api.initWithDelegate(&m_delegate);
    postInternet(1);
    postInternet(0);
    postInternet(1);
    ASSERT_EQ(m_services.urls().downloads().size(), 1U);
    EXPECT_EQ(m_services.urls().downloads().front(), QByteArray(baseOnWire));
    EXPECT_TRUE(m_api.inetConnect());
}

TEST_F(QrvAPITest, RequestThatFailedToStartIsRetried) {
    m_api.initWithDelegate(&m_delegate);
    m_services.urls().setRefusing(true);
    postInternet(1);
    m_services.urls().setRefusing(false);
    postInternet(1);
    EXPECT_EQ(m_services.urls().downloads().size(), 1U);
}

TEST_F(QrvAPITest, NoNetworkSwitchesRequestsOff) {
    m_api.initWithDelegate(&m_delegate);
    postInternet(1);
    postInternet(0);
    EXPECT_FALSE(m_api.inetConnect());
    EXPECT_FALSE(m_api.cmdAuth(QString()));
}

TEST_F(QrvAPITest, SecondInitialisationObservesTwiceAndStillSendsOnce) {
    m_api.initWithDelegate(&m_delegate);
    m_api.initWithDelegate(&m_delegate);
    m_services.logSink().clear();
    postInternet(1);
    EXPECT_EQ(m_services.logSink().lines().count(text("inetStatus: 1")), 2);
    EXPECT_EQ(m_services.urls().downloads().size(), 1U);
}

TEST_F(QrvAPITest, ServerListRequestIsLogged) {
    m_api.setInetConnect(true);
    m_api.cmdAuth(QString());
    EXPECT_TRUE(m_services.logSink().lines().contains(text("version is 1.0.0")));
    EXPECT_TRUE(m_services.logSink().lines().contains(text("new url ") + text(baseOnWire)));
}

TEST_F(QrvAPITest, DiagnosticsAreSilentWhileShowLogsReadsOtherThanZero) {
    m_services.preferences().setValue(text("showLogs"), 1);
    m_api.initWithDelegate(&m_delegate);
    postInternet(1);
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
}

TEST_F(QrvAPITest, ParametersRequestUrl) {
    m_api.setInetConnect(true);
    EXPECT_TRUE(m_api.setParameters(text("ignored"), text("=a b+c")));
    EXPECT_EQ(m_services.urls().downloads().front(), QByteArray(baseOnWire) + "&cmd=phs=a%20b%2Bc");
    EXPECT_EQ(m_api.request().kind, QrvApiRequest::Parameters);
}

TEST_F(QrvAPITest, LeaseRenewalSendsNothing) {
    m_api.setInetConnect(true);
    m_api.getLease(QString());
    EXPECT_TRUE(m_services.urls().downloads().empty());
}

TEST_F(QrvAPITest, SecondRequestOverwritesTheKind) {
    m_api.setDelegate(&m_delegate);
    m_api.setInetConnect(true);
    m_api.cmdAuth(QString());
    m_api.setParameters(QString(), text("=x"));
    ASSERT_TRUE(m_services.urls().finishNext("STATUS: 0<br />ClientIP: 1.2.3.4"));
    EXPECT_EQ(m_delegate.lastKind, QrvApiRequest::Parameters);
    EXPECT_TRUE(m_api.request().clientIP.isNull()); // only the server-list kind has it
}

struct SerialCase {
    const char *serial;
    bool replaced;
};

class Serial : public QrvAPITest, public testing::WithParamInterface<SerialCase> {};

TEST_P(Serial, PlaceholdersAreReplacedByTheNetworkCard) {
    m_services.hardware().serial = text(GetParam().serial);
    m_services.hardware().address = QByteArray::fromHex("0a1b2c3d4e5f");
    const QString expected = GetParam().replaced ? text("0A1B2C3D4E5F") : text(GetParam().serial);
    EXPECT_EQ(m_api.platformSerialNumber(), expected + text("-1.0.0"));
}

INSTANTIATE_TEST_SUITE_P(Cases, Serial,
                         testing::Values(SerialCase{"unknown", true}, SerialCase{"Unknown", false},
                                         SerialCase{"System", true}, SerialCase{"System Serial", true},
                                         SerialCase{"SystemX", true}, SerialCase{"xSystem", false},
                                         SerialCase{"A B", true}, SerialCase{" A", true},
                                         SerialCase{"xSerialx", true}, SerialCase{"serial", false},
                                         SerialCase{"1", false}, SerialCase{"C02XYZ", false}));

TEST_F(QrvAPITest, WithoutAnySerialTheIdentifierBeginsWithNull) {
    m_services.hardware().serial.reset();
    EXPECT_EQ(m_api.platformSerialNumber(), text("(null)-1.0.0"));
    EXPECT_TRUE(QrvAPI::alternativePlatformSerialNumber().isNull());
}

TEST_F(QrvAPITest, NetworkCardIsReadOncePerProcess) {
    m_services.hardware().address = QByteArray::fromHex("0a1b2c3d4e5f");
    EXPECT_EQ(QrvAPI::alternativePlatformSerialNumber(), text("0A1B2C3D4E5F"));
    m_services.hardware().address = QByteArray::fromHex("ffffffffffff");
    EXPECT_EQ(QrvAPI::alternativePlatformSerialNumber(), text("0A1B2C3D4E5F"));
}

TEST_F(QrvAPITest, MissingNetworkCardIsQueriedAgain) {
    EXPECT_TRUE(QrvAPI::alternativePlatformSerialNumber().isNull());
    m_services.hardware().address = QByteArray::fromHex("0a1b2c3d4e5f");
    EXPECT_EQ(QrvAPI::alternativePlatformSerialNumber(), text("0A1B2C3D4E5F"));
}

TEST_F(QrvAPITest, IdentifierIsKept) {
    EXPECT_EQ(m_api.macSerial(), text("C02XYZ-1.0.0"));
    m_services.hardware().serial = text("OTHER");
    EXPECT_EQ(m_api.macSerial(), text("C02XYZ-1.0.0"));
}

TEST_F(QrvAPITest, TemporaryFileIsNamedByKindAndTime) {
    m_api.setInetConnect(true);
    const QString folder = m_services.platform().temporaryFolder;
    m_api.cmdAuth(QString());
    const QRegularExpression form(QRegularExpression::anchoredPattern(QRegularExpression::escape(folder) +
                                                                      text("/auth-\\d{8}-\\d{6}")));
    EXPECT_TRUE(form.match(m_api.decideDestination()).hasMatch());
}

TEST_F(QrvAPITest, NameThatAnotherFileHasIsPassedBy) {
    // Which second it will be is not known, so each of the next minute has its folder.
    const QString folder = m_services.platform().temporaryFolder;
    const QDateTime now = QDateTime::currentDateTime();
    for (int second = 0; second < 60; ++second) {
        ASSERT_TRUE(
            QDir().mkpath(folder + text("/auth-") + now.addSecs(second).toString(text("yyyyMMdd-HHmmss"))));
    }
    m_api.setDelegate(&m_delegate);
    answer("STATUS: 0<br />ClientIP: 1.2.3.4");
    EXPECT_EQ(m_delegate.answers, 1);
    EXPECT_EQ(m_api.request().clientIP, text("1.2.3.4"));
    const QString own = m_services.home() + text("/Library/Caches/com.tallowind.Quorvane");
    EXPECT_TRUE(QDir(own).exists());
    EXPECT_TRUE(QDir(own).isEmpty()) << "removed after it was read";
}

TEST(RequestKinds, Names) {
    const QList<QPair<quint32, const char *>> cases{
        {0, "none"},        {5, "auth"},    {6, "locations"}, {7, "browser"},  {8, "programs"},
        {10, "parameters"}, {1, "unknown"}, {9, "unknown"},   {11, "unknown"}, {4294967295U, "unknown"}};
    for (const auto &[kind, name] : cases) {
        EXPECT_EQ(QrvApiRequest::kindName(kind), text(name)) << kind;
    }
}

TEST_F(QrvAPITest, AnswerFillsTheRecord) {
    m_api.setDelegate(&m_delegate);
    answer("STATUS: 0<br />ClientIP: 1.2.3.4<br />CC: DE<br />LOCATIONS: DE;BER;Berlin;0<br />VPNUser: u<br "
           "/>VPNPass: p<br />Server: 7,Berlin,BER,DE,Germany,x|10.0.0.1,10.0.0.2");
    EXPECT_EQ(m_delegate.answers, 1);
    EXPECT_EQ(m_api.request().status, 0);
    EXPECT_EQ(m_api.request().clientIP, text("1.2.3.4"));
    EXPECT_EQ(m_api.request().clientCountry, text("DE"));
    EXPECT_TRUE(m_api.request().hasLocations);
    EXPECT_EQ(m_api.model().locations().size(), 2);
    ASSERT_EQ(m_api.request().servers.size(), 1);
    EXPECT_EQ(m_api.request().servers.first()->user, text("u"));
    EXPECT_EQ(m_api.request().servers.first()->pass, text("p"));
    EXPECT_TRUE(m_api.model().isServerListValid());
    EXPECT_TRUE(QDir(m_services.platform().temporaryFolder).entryList({text("auth-*")}).isEmpty());
}

TEST_F(QrvAPITest, AnswerWithLineFeedsIsOneLine) {
    m_api.setDelegate(&m_delegate);
    answer("STATUS: 0\nClientIP: 1.2.3.4\nServer: a,b,c,d,e,f|1.1.1.1");
    EXPECT_EQ(m_delegate.answers, 1);
    EXPECT_TRUE(m_api.request().clientIP.isNull());
    EXPECT_FALSE(m_api.model().isServerListValid());
}

TEST_F(QrvAPITest, StatusIsKeptInEightBits) {
    const QList<QPair<QByteArray, int>> cases{{"5", 5},    {"-1", -1}, {"128", -128}, {"256", 0},
                                              {"300", 44}, {"x", 0},   {"7up", 7},    {"", 0}};
    for (const auto &[value, status] : cases) {
        answer("STATUS: " + value);
        EXPECT_EQ(m_api.request().status, status) << value.constData();
    }
}

TEST_F(QrvAPITest, AnswerWithoutAFieldKeepsTheOldValue) {
    answer("STATUS: 3<br />ClientIP: 1.2.3.4<br />CC: DE<br />LOCATIONS: DE;BER;Berlin;0<br />Server: "
           "7,Berlin,BER,DE,Germany,x|10.0.0.1");
    answer("X: y");
    EXPECT_EQ(m_api.request().status, 3);
    EXPECT_EQ(m_api.request().clientIP, text("1.2.3.4"));
    EXPECT_EQ(m_api.request().servers.size(), 1);
    EXPECT_TRUE(m_api.model().isServerListValid());
}

TEST_F(QrvAPITest, ServersOfAnyKindAreRecorded) {
    m_api.setInetConnect(true);
    m_api.setParameters(QString(), text("=x"));
    ASSERT_TRUE(m_services.urls().finishNext("ClientIP: 9.9.9.9<br />Server: a,b,c,d,e,f|1.1.1.1"));
    EXPECT_EQ(m_api.request().servers.size(), 1);
    EXPECT_TRUE(m_api.request().clientIP.isNull());
    EXPECT_TRUE(m_api.request().servers.first()->user.isNull());
}

class NoAnswer : public QrvAPITest, public testing::WithParamInterface<QByteArray> {};

TEST_P(NoAnswer, IsDroppedSilentlyAndTheFileStays) {
    m_api.setDelegate(&m_delegate);
    answer(GetParam());
    EXPECT_EQ(m_delegate.answers, 0);
    EXPECT_EQ(m_api.request().kind, QrvApiRequest::None);
    EXPECT_EQ(QDir(m_services.platform().temporaryFolder).entryList({text("auth-*")}).size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Cases, NoAnswer,
                         testing::Values(QByteArray(),
                                         QByteArray("Connection to the Quorvane API successful."),
                                         QByteArray("STATUS: 0<br />ClientIP: \xff\xfe"),
                                         QByteArray("STATUS: \xC3")));

TEST_F(QrvAPITest, DroppedAnswerFreesTheServerListRecord) {
    answer("STATUS: 0<br />ClientIP: 1.2.3.4<br />CC: DE<br />LOCATIONS: DE;BER;Berlin;0");
    answer("");
    EXPECT_TRUE(m_api.request().clientIP.isNull());
    EXPECT_TRUE(m_api.request().clientCountry.isNull());
    EXPECT_FALSE(m_api.request().hasLocations);
}

TEST_F(QrvAPITest, FreeingAnotherKindResetsOnlyTheKind) {
    answer("STATUS: 0<br />ClientIP: 1.2.3.4");
    m_api.setParameters(QString(), text("=x"));
    m_api.freeRequest();
    EXPECT_EQ(m_api.request().kind, QrvApiRequest::None);
    EXPECT_EQ(m_api.request().clientIP, text("1.2.3.4"));
}

TEST_F(QrvAPITest, FinishedWithoutADestinationIsDropped) {
    m_api.setDelegate(&m_delegate);
    m_api.downloadDidFinish();
    EXPECT_EQ(m_delegate.answers, 0);
}

TEST_F(QrvAPITest, FailureReachesTheDelegateAndKeepsTheRecord) {
    m_api.setDelegate(&m_delegate);
    answer("STATUS: 0<br />ClientIP: 1.2.3.4");
    m_api.cmdAuth(QString());
    ASSERT_TRUE(m_services.urls().failNext({platform::UrlError::Kind::Refused, text("refused")}));
    EXPECT_EQ(m_delegate.failures, QStringList{text("refused")});
    EXPECT_EQ(m_api.request().kind, QrvApiRequest::Auth);
    EXPECT_EQ(m_api.request().clientIP, text("1.2.3.4"));
}

TEST_F(QrvAPITest, BothDelegateOperationsAreOptional) {
    class Silent final : public QrvApiProtocol {
    } silent;

    m_api.setDelegate(&silent);
    answer("STATUS: 0");
    m_api.cmdAuth(QString());
    EXPECT_TRUE(m_services.urls().failNext({}));
    m_api.setDelegate(nullptr);
    answer("STATUS: 1");
    EXPECT_EQ(m_api.request().status, 1);
}

class LongAnswer : public QrvAPITest {
protected:
    /// Longer than what is read at once.
    static QByteArray longBody(const QByteArray &country) {
        const QByteArray line = "Server: 7,Berlin,BER," + country + ",Germany,x|10.0.0.1<br />";
        return "STATUS: 1<br />ClientIP: 1.1.1.1<br />" +
               line.repeated(AnswerQueue::longestReadAtOnce / line.size() + 1);
    }

    void finish(const QByteArray &body) {
        ASSERT_TRUE(m_api.cmdAuth(QString()));
        ASSERT_TRUE(m_services.urls().finishNext(body));
    }

    [[nodiscard]] QString country() const { return m_api.request().servers.at(0)->countryCode; }
};

TEST_F(LongAnswer, IsReadInTheBackgroundAndReportedWhenItsListIsReady) {
    m_api.setDelegate(&m_delegate);
    m_api.setInetConnect(true);
    finish(longBody("DE"));
    EXPECT_EQ(m_delegate.answers, 0);
    EXPECT_TRUE(m_api.request().servers.isEmpty());
    ASSERT_TRUE(spinUntil([this] { return m_delegate.answers == 1; }));
    EXPECT_EQ(country(), text("DE"));
    EXPECT_TRUE(m_api.model().isServerListValid());
    EXPECT_TRUE(QDir(m_services.platform().temporaryFolder).entryList({text("auth-*")}).isEmpty());
}

TEST_F(LongAnswer, LaterReportsWaitForIt) {
    class Recorder final : public QrvApiProtocol {
    public:
        void qrvAnswer(QrvAPI &api) override { events.append(api.request().clientIP); }

        void qrvFailed(const platform::UrlError &error) override { events.append(error.description); }

        QStringList events;
    } recorder;

    m_api.setDelegate(&recorder);
    m_api.setInetConnect(true);
    finish(longBody("DE"));
    ASSERT_TRUE(m_api.cmdAuth(QString()));
    ASSERT_TRUE(m_services.urls().failNext({platform::UrlError::Kind::Refused, text("refused")}));
    finish("ClientIP: 2.2.2.2<br />Server: 8,Paris,PAR,FR,France,x|10.0.0.1");
    EXPECT_TRUE(recorder.events.isEmpty());
    ASSERT_TRUE(spinUntil([&recorder] { return recorder.events.size() == 3; }));
    EXPECT_EQ(recorder.events, (QStringList{text("1.1.1.1"), text("refused"), text("2.2.2.2")}));
    EXPECT_EQ(country(), text("FR"));
}

TEST_F(LongAnswer, OfAClientThatIsGoneIsDropped) {
    auto api = std::make_unique<QrvAPI>();
    api->setDelegate(&m_delegate);
    api->setInetConnect(true);
    ASSERT_TRUE(api->cmdAuth(QString()));
    ASSERT_TRUE(m_services.urls().finishNext(longBody("DE")));
    api.reset();
    m_services.background().finishAll();
    deliverQueued();
    EXPECT_EQ(m_delegate.answers, 0);
}

TEST_F(LongAnswer, LinesBeyondTheMaximumAreLeftOutWithOneLogLine) {
    m_api.setDelegate(&m_delegate);
    m_api.setInetConnect(true);
    m_services.logSink().clear();
    finish(QByteArray("Server:,,,,|<br />").repeated(ServerLines::maximumLines + 3));
    ASSERT_TRUE(spinUntil([this] { return m_delegate.answers == 1; }));
    EXPECT_EQ(m_api.request().servers.size(), ServerLines::maximumLines);
    EXPECT_EQ(m_services.logSink().lines().filter(text("left out")),
              QStringList{text("server list: 3 lines beyond the first 100000 are left out")});
}

TEST_F(QrvAPITest, OneTimePairNeverReachesTheLog) {
    m_services.platform().log->setMask({});
    m_api.setDelegate(&m_delegate);
    answer(
        "STATUS: 0<br />VPNUser: topsecretuser<br />VPNPass: topsecretpass<br />Server: a,b,c,d,e,f|1.1.1.1");
    for (const QString &line : m_services.logSink().lines()) {
        EXPECT_FALSE(line.contains(text("topsecret"))) << line.toStdString();
    }
}

TEST_F(QrvAPITest, NotificationCarriesTheProductName) {
    m_api.showNotification(text("Hello"));
    ASSERT_EQ(m_services.workspace().notifications.size(), 1U);
    EXPECT_EQ(m_services.workspace().notifications.front().title, text("Hello"));
    EXPECT_EQ(m_services.workspace().notifications.front().text, text("Quorvane"));
}

} // namespace

} // namespace quorvane
