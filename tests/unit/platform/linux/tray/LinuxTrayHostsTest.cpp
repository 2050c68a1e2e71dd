#include "platform/linux/tray/LinuxTrayHosts.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/platform/linux/DesktopBus.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QThread>

#include <atomic>
#include <cstdlib>
#include <gtest/gtest.h>
#include <xcb/xcb.h>

namespace quorvane::platform {

namespace {

using platform::LinuxTrayHosts;
using platform::StatusNotifierWatch;
using platform::TraySelectionWatch;

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

/// A status notifier watcher on its own thread, as real watchers have their own processes.
class FakeWatcher final : public QDBusVirtualObject {
public:
    enum class Behaviour { Usual, NotListed, Hanging };

    explicit FakeWatcher(bool host, Behaviour behaviour = Behaviour::Usual)
        : m_hasHost(host), m_behaviour(behaviour) {
        moveToThread(&m_thread);
        m_thread.start();
        m_bus.registerVirtualObject(watcherPath, this);
        m_owned = m_bus.registerService(watcherName);
    }

    ~FakeWatcher() override {
        m_bus.unregisterService(watcherName);
        m_bus.unregisterObject(watcherPath);
        m_thread.quit();
        m_thread.wait();
        QDBusConnection::disconnectFromBus(QStringLiteral("watcher"));
    }

    FakeWatcher(const FakeWatcher &) = delete;
    FakeWatcher &operator=(const FakeWatcher &) = delete;

    [[nodiscard]] bool isUp() const { return m_owned; }

    void setHost(bool host) {
        m_hasHost = host;
        m_bus.send(QDBusMessage::createSignal(watcherPath, watcherName,
                                              host ? QStringLiteral("StatusNotifierHostRegistered")
                                                   : QStringLiteral("StatusNotifierHostUnregistered")));
    }

    [[nodiscard]] QString introspect(const QString & /*path*/) const override {
        return m_behaviour == Behaviour::NotListed
                   ? QString()
                   : QStringLiteral(
                         "<interface name=\"%1\"><property name=\"IsStatusNotifierHostRegistered\" "
                         "type=\"b\" access=\"read\"/></interface>")
                         .arg(watcherName);
    }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override {
        if (message.member() != QLatin1String("Get")) {
            return false;
        }
        if (m_behaviour == Behaviour::Hanging) {
            message.setDelayedReply(true);
            return true;
        }
        return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(m_hasHost.load()))));
    }

private:
    QDBusConnection m_bus = QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
                                                          QStringLiteral("watcher"));
    QThread m_thread;
    std::atomic_bool m_hasHost;
    const Behaviour m_behaviour;
    bool m_owned = false;
};

class StatusNotifierWatchTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { m_bus = std::make_unique<DesktopBus>(); }

    static void TearDownTestSuite() { m_bus.reset(); }

    void SetUp() override { ASSERT_TRUE(DesktopBus::isUp()); }

    static std::unique_ptr<DesktopBus> m_bus;
};

std::unique_ptr<DesktopBus> StatusNotifierWatchTest::m_bus;

TEST_F(StatusNotifierWatchTest, NoWatcherIsNoHost) {
    EXPECT_FALSE(StatusNotifierWatch().hostRegistered());
}

TEST_F(StatusNotifierWatchTest, ExistingHostIsKnownAtOnce) {
    const FakeWatcher watcher(true);
    ASSERT_TRUE(watcher.isUp());
    EXPECT_TRUE(StatusNotifierWatch().hostRegistered());
}

TEST_F(StatusNotifierWatchTest, LateWatcherIsReported) {
    StatusNotifierWatch watch;
    int changes = 0;
    watch.setChangeHandler([&changes] { ++changes; });
    const FakeWatcher watcher(true);
    ASSERT_TRUE(watcher.isUp());
    EXPECT_TRUE(spinUntil([&] { return watch.hostRegistered(); }));
    EXPECT_EQ(changes, 1);
}

TEST_F(StatusNotifierWatchTest, RestartedWatcherIsReported) {
    StatusNotifierWatch watch;
    QList<bool> states;
    watch.setChangeHandler([&] { states.append(watch.hostRegistered()); });
    auto watcher = std::make_unique<FakeWatcher>(true);
    ASSERT_TRUE(spinUntil([&] { return watch.hostRegistered(); }));
    watcher.reset();
    ASSERT_TRUE(spinUntil([&] { return !watch.hostRegistered(); }));
    watcher = std::make_unique<FakeWatcher>(true);
    ASSERT_TRUE(spinUntil([&] { return watch.hostRegistered(); }));
    EXPECT_EQ(states, (QList<bool>{true, false, true}));
}

TEST_F(StatusNotifierWatchTest, HostThatStartsAfterItsWatcherIsReported) {
    FakeWatcher watcher(false);
    StatusNotifierWatch watch;
    EXPECT_FALSE(watch.hostRegistered());
    watcher.setHost(true);
    EXPECT_TRUE(spinUntil([&] { return watch.hostRegistered(); }));
    watcher.setHost(false);
    EXPECT_TRUE(spinUntil([&] { return !watch.hostRegistered(); }));
}

TEST_F(StatusNotifierWatchTest, WatcherWithoutHostPropertyCountsAsNoHost) {
    const FakeWatcher watcher(true, FakeWatcher::Behaviour::NotListed);
    EXPECT_FALSE(StatusNotifierWatch().hostRegistered());
}

TEST_F(StatusNotifierWatchTest, HangingWatcherDoesNotBlock) {
    const FakeWatcher watcher(true, FakeWatcher::Behaviour::Hanging);
    QElapsedTimer timer;
    timer.start();
    const StatusNotifierWatch watch;
    EXPECT_FALSE(watch.hostRegistered());
    EXPECT_LT(timer.elapsed(), 5000); // the bus itself would wait for 25 seconds
}

/// A separate X server with a tray.
class TraySelectionTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        m_server = std::make_unique<QProcess>();
        m_server->start(QStringLiteral("Xvfb"),
                        {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-noreset"),
                         QStringLiteral("-nolisten"), QStringLiteral("tcp")});
        if (m_server->waitForStarted() && m_server->waitForReadyRead(20000)) {
            m_display = ':' + m_server->readLine().trimmed();
        }
    }

    static void TearDownTestSuite() {
        m_server->terminate();
        m_server->waitForFinished();
        m_server.reset();
    }

    void SetUp() override { ASSERT_FALSE(m_display.isEmpty()); }

    static std::unique_ptr<QProcess> m_server;
    static QByteArray m_display;
};

std::unique_ptr<QProcess> TraySelectionTest::m_server;
QByteArray TraySelectionTest::m_display;

/// Owns the tray selection like an embedding tray, until it is destroyed.
class FakeTray {
public:
    explicit FakeTray(const QByteArray &display) : m_connection(xcb_connect(display.constData(), nullptr)) {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        const xcb_window_t window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        const xcb_atom_t selection = atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(m_connection, window, selection, XCB_CURRENT_TIME);
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = screen->root;
        message.type = atom("MANAGER");
        message.data.data32[1] = selection;
        message.data.data32[2] = window;
        xcb_send_event(m_connection, 0, screen->root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char *>(&message));
        finish();
    }

    ~FakeTray() { xcb_disconnect(m_connection); }

    FakeTray(const FakeTray &) = delete;
    FakeTray &operator=(const FakeTray &) = delete;

private:
    [[nodiscard]] xcb_atom_t atom(const QByteArray &name) const {
        auto *answer = xcb_intern_atom_reply(
            m_connection,
            xcb_intern_atom(m_connection, 0, static_cast<quint16>(name.size()), name.constData()), nullptr);
        const xcb_atom_t found = answer->atom;
        std::free(answer);
        return found;
    }

    /// Returns when the server has processed all requests.
    void finish() const {
        std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

    xcb_connection_t *m_connection;
};

TEST_F(TraySelectionTest, NoServerIsNoTray) {
    EXPECT_FALSE(TraySelectionWatch(QByteArrayLiteral(":nowhere")).owned());
}

TEST_F(TraySelectionTest, ExistingTrayIsKnownAtOnce) {
    EXPECT_FALSE(TraySelectionWatch(m_display).owned());
    const FakeTray tray(m_display);
    EXPECT_TRUE(TraySelectionWatch(m_display).owned());
}

TEST_F(TraySelectionTest, StartedEndedAndRestartedTrayIsReported) {
    TraySelectionWatch watch(m_display);
    QList<bool> states;
    watch.setChangeHandler([&] { states.append(watch.owned()); });
    auto tray = std::make_unique<FakeTray>(m_display);
    ASSERT_TRUE(spinUntil([&] { return watch.owned(); }));
    tray.reset();
    ASSERT_TRUE(spinUntil([&] { return !watch.owned(); }));
    tray = std::make_unique<FakeTray>(m_display);
    ASSERT_TRUE(spinUntil([&] { return watch.owned(); }));
    EXPECT_EQ(states, (QList<bool>{true, false, true}));
}

TEST_F(TraySelectionTest, NewOwnerOfTheSelectionIsWatched) {
    TraySelectionWatch watch(m_display);
    auto first = std::make_unique<FakeTray>(m_display);
    ASSERT_TRUE(spinUntil([&] { return watch.owned(); }));
    auto second = std::make_unique<FakeTray>(m_display);
    first.reset();
    deliverQueued();
    EXPECT_TRUE(watch.owned());
    second.reset(); // not noticed if the first owner were still watched
    EXPECT_TRUE(spinUntil([&] { return !watch.owned(); }));
}

TEST_F(TraySelectionTest, EmbeddingTraysCountOnlyWhereWindowsCanBeEmbedded) {
    qputenv("DISPLAY", m_display);
    const FakeTray tray(m_display);
    EXPECT_TRUE(LinuxTrayHosts(true).embeddingTray());
    EXPECT_FALSE(LinuxTrayHosts(false).embeddingTray());
}

} // namespace

} // namespace quorvane::platform
