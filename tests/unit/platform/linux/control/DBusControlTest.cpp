#include "platform/linux/control/DBusControlClient.h"
#include "platform/linux/control/DBusControlService.h"

#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"
#include "tests/unit/platform/linux/DesktopBus.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QTimer>

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

/// Records what other programs ask for. The test answers.
class RecordingHandler final : public ControlHandler {
public:
    void operate(ControlOperation operation, const QString &location, const Reply &reply) override {
        operations.append({operation, location});
        if (answersAtOnce) {
            reply(outcome);
        } else {
            waiting.append(reply);
        }
    }

    [[nodiscard]] ControlState controlState() const override { return state; }

    [[nodiscard]] QList<ControlLocation> controlLocations() const override { return locations; }

    ControlState state{
        text("not-hidden"), text("198.51.100.10"), text("198.51.100.10"), text("Norway Oslo"), false, false};
    QList<ControlLocation> locations{{text("Random Location"), {}, false, false},
                                     {text("Norway Oslo"), text("NO"), true, true}};
    ControlOutcome outcome;
    bool answersAtOnce = true;
    QList<std::pair<ControlOperation, QString>> operations;
    QList<Reply> waiting;
};

class DBusControlTest : public testing::Test {
protected:
    static QDBusConnection connect(const char *name) {
        return QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), text(name));
    }

    ~DBusControlTest() override {
        m_service.reset();
        QDBusConnection::disconnectFromBus(text("copy"));
        QDBusConnection::disconnectFromBus(text("other"));
    }

    void offer() { ASSERT_TRUE(m_service->offer(m_handler)); }

    DesktopBus m_desktop;
    RecordingHandler m_handler;
    std::unique_ptr<DBusControlService> m_service =
        std::make_unique<DBusControlService>(connect("copy"), text("1.0.0"));
    DBusControlClient m_client{connect("other"), text("/bin/true"), {}};
};

TEST_F(DBusControlTest, CopyIsReachedWhileItIsOffered) {
    EXPECT_FALSE(m_client.isRunning());
    EXPECT_FALSE(m_client.state().has_value());
    EXPECT_FALSE(m_client.locations().has_value());
    offer();
    EXPECT_TRUE(m_client.isRunning());
    EXPECT_EQ(m_client.state(), m_handler.state);
    EXPECT_EQ(m_client.locations(), m_handler.locations);
    m_service->withdraw();
    EXPECT_FALSE(m_client.isRunning());
}

TEST_F(DBusControlTest, SecondCopyIsNotOffered) {
    offer();
    RecordingHandler other;
    DBusControlService second(connect("second"), text("1.0.0"));
    EXPECT_FALSE(second.offer(other));
    EXPECT_TRUE(m_client.isRunning());
    QDBusConnection::disconnectFromBus(text("second"));
}

TEST_F(DBusControlTest, WithoutABusNothingIsOffered) {
    DBusControlService alone(QDBusConnection(QString()), text("1.0.0"));
    EXPECT_FALSE(alone.offer(m_handler));
    alone.reportState();
    alone.reportLocations();
    DBusControlClient client(QDBusConnection(QString()), text("/bin/true"), {});
    EXPECT_FALSE(client.isRunning());
    EXPECT_FALSE(client.start());
}

TEST_F(DBusControlTest, EveryOperationReachesTheCopy) {
    offer();
    m_handler.outcome.text = text("203.0.113.9");
    const QList<std::pair<ControlOperation, bool>> operations = {
        {ControlOperation::Hide, true},    {ControlOperation::Stop, false}, {ControlOperation::Change, true},
        {ControlOperation::Discard, true}, {ControlOperation::Show, false}, {ControlOperation::Quit, false}};
    for (const auto &[operation, returnsAddress] : operations) {
        const ControlOutcome outcome = m_client.operate(operation, text("Norway Oslo"), {});
        EXPECT_EQ(outcome.kind, ControlOutcome::Kind::Done);
        EXPECT_EQ(outcome.text, returnsAddress ? text("203.0.113.9") : QString());
    }
    ASSERT_EQ(m_handler.operations.size(), operations.size());
    for (qsizetype i = 0; i < operations.size(); ++i) {
        const auto &[operation, location] = m_handler.operations.at(i);
        EXPECT_EQ(operation, operations.at(i).first);
        EXPECT_EQ(location, operation == ControlOperation::Hide ? text("Norway Oslo") : QString());
    }
}

TEST_F(DBusControlTest, FailuresKeepTheirKindAndText) {
    offer();
    for (const auto kind : {ControlOutcome::Kind::Failed, ControlOutcome::Kind::NotHidden,
                            ControlOutcome::Kind::UnknownLocation}) {
        m_handler.outcome = {kind, text("why")};
        EXPECT_EQ(m_client.operate(ControlOperation::Change, {}, {}), m_handler.outcome);
    }
}

TEST_F(DBusControlTest, CopyThatEndsBeforeItsAnswerIsNotRunning) {
    offer();
    m_handler.answersAtOnce = false;
    QTimer::singleShot(0, m_service.get(), [this] {
        ASSERT_TRUE(spinUntil([this] { return !m_handler.waiting.isEmpty(); }));
        // As when the process ends: nothing of it holds the connection.
        m_handler.waiting.clear();
        m_service.reset();
        QDBusConnection::disconnectFromBus(text("copy"));
    });
    EXPECT_EQ(m_client.operate(ControlOperation::Hide, {}, {}).kind, ControlOutcome::Kind::NotRunning);
}

TEST_F(DBusControlTest, StatesAreReportedWhileAnOperationGoesOn) {
    offer();
    m_handler.answersAtOnce = false;
    QStringList seen;
    QTimer::singleShot(0, m_service.get(), [this] {
        ASSERT_TRUE(spinUntil([this] { return !m_handler.waiting.isEmpty(); }));
        m_handler.state.state = text("searching");
        m_service->reportState();
    });
    const ControlOutcome outcome =
        m_client.operate(ControlOperation::Hide, {}, [this, &seen](const ControlState &state) {
            seen.append(state.state);
            m_handler.waiting.takeFirst()({ControlOutcome::Kind::Done, text("203.0.113.9")});
        });
    EXPECT_EQ(outcome.text, text("203.0.113.9"));
    EXPECT_EQ(seen, QStringList{text("searching")});
}

TEST_F(DBusControlTest, FollowerSeesEachStateAndTheEnd) {
    offer();
    QStringList seen;
    m_client.follow([this, &seen](const std::optional<ControlState> &state) {
        seen.append(state ? state->state : text("end"));
        if (seen.size() == 1) {
            m_handler.state.state = text("hidden");
            m_service->reportState();
        } else if (state) {
            m_service->withdraw();
        }
        return true;
    });
    EXPECT_EQ(seen, (QStringList{text("not-hidden"), text("hidden"), text("end")}));
}

TEST_F(DBusControlTest, InterfaceDescribesItself) {
    offer();
    const QDBusReply<QString> description =
        QDBusConnection(text("other"))
            .call(QDBusMessage::createMethodCall(
                      text("com.tallowind.Quorvane"), text("/com/tallowind/Quorvane"),
                      text("org.freedesktop.DBus.Introspectable"), text("Introspect")),
                  QDBus::BlockWithGui);
    ASSERT_TRUE(description.isValid());
    for (const char *part : {"<interface name=\"com.tallowind.Quorvane\">", "\"Hide\"", "\"Stop\"",
                             "\"Change\"", "\"Discard\"", "\"Show\"", "\"Quit\"", "\"GetLocations\"",
                             "\"LocationsChanged\"", "\"State\"", "\"CurrentAddress\"", "\"RealAddress\"",
                             "\"Location\"", "\"NetworkLock\"", "\"AsksAdministrator\"", "\"Version\""}) {
        EXPECT_TRUE(description.value().contains(text(part))) << part;
    }
}

} // namespace

} // namespace quorvane::platform
