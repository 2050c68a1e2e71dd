#include "platform/linux/hotkeys/PlasmaKeys.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/platform/linux/DesktopBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QHash>

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace quorvane::platform {

/// One entry of the table, in the order in which it is sent.
struct TableEntry {
    QString id;
    QString component;
    QList<int> keys;
};

QDBusArgument &operator<<(QDBusArgument &argument, const TableEntry &entry) {
    argument.beginStructure();
    argument << entry.id << entry.id << entry.component << entry.component << QStringLiteral("default")
             << QStringLiteral("Default") << entry.keys << entry.keys;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, TableEntry & /*entry*/) {
    return argument; // never received
}

namespace {

const QString tableService = QStringLiteral("org.kde.kglobalaccel");
const QString ownComponent = QStringLiteral("quorvane");
constexpr int keysOfMeta1 = 0x10000031;
constexpr int keysOfControlShiftF2 = 0x07000031;

/// Plasma's table of keys, which refuses calls of any other form than its own.
class FakeTable final : public QDBusVirtualObject {
public:
    explicit FakeTable(const QString &address)
        : m_bus(QDBusConnection::connectToBus(address, QStringLiteral("fake-table"))) {
        qDBusRegisterMetaType<TableEntry>();
        qDBusRegisterMetaType<QList<TableEntry>>();
        m_bus.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        started = m_bus.registerService(tableService);
    }

    ~FakeTable() override {
        m_bus.unregisterService(tableService);
        m_bus.unregisterObject(QStringLiteral("/"));
        QDBusConnection::disconnectFromBus(QStringLiteral("fake-table"));
    }

    FakeTable(const FakeTable &) = delete;
    FakeTable &operator=(const FakeTable &) = delete;

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection & /*connection*/) override {
        calls.append(message.member());
        m_bus.send(answerTo(message));
        return true;
    }

    bool started = false;
    QList<TableEntry> entries;
    QStringList calls;

private:
    [[nodiscard]] QDBusMessage answerTo(const QDBusMessage &message) const {
        const QString call = message.interface() + QLatin1Char('.') + message.member();
        if (call == QLatin1String("org.kde.KGlobalAccel.getComponent") &&
            message.arguments() == QVariantList{ownComponent}) {
            return message.createReply(QVariant::fromValue(QDBusObjectPath("/component/quorvane")));
        }
        if (call == QLatin1String("org.kde.kglobalaccel.Component.allShortcutInfos") &&
            message.path() == QLatin1String("/component/quorvane")) {
            return message.createReply(QVariant::fromValue(
                select([](const TableEntry &entry) { return entry.component == ownComponent; })));
        }
        if (call == QLatin1String("org.kde.KGlobalAccel.globalShortcutsByKey") &&
            message.signature() == QLatin1String("(ai)(i)")) {
            const int key = firstKey(message.arguments().at(0).value<QDBusArgument>());
            return message.createReply(QVariant::fromValue(
                select([key](const TableEntry &entry) { return entry.keys.contains(key); })));
        }
        return message.createErrorReply(QStringLiteral("org.kde.kglobalaccel.NoSuchComponent"), call);
    }

    [[nodiscard]] QList<TableEntry> select(const std::function<bool(const TableEntry &)> &fits) const {
        QList<TableEntry> found;
        std::copy_if(entries.cbegin(), entries.cend(), std::back_inserter(found), fits);
        return found;
    }

    static int firstKey(const QDBusArgument &sequence) {
        QList<int> keys;
        sequence.beginStructure();
        sequence >> keys;
        sequence.endStructure();
        return keys.size() == 4 ? keys.first() : -1;
    }

    QDBusConnection m_bus;
};

const QHash<QString, QString> hide{{QStringLiteral("hide"), QStringLiteral("LOGO+1")}};

class PlasmaKeysTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(DesktopBus::isUp());
        ASSERT_TRUE(m_table.started);
    }

    ~PlasmaKeysTest() override { QDBusConnection::disconnectFromBus(QStringLiteral("plasma-keys")); }

    void find(PlasmaKeys &keys, const QHash<QString, QString> &triggers) {
        keys.findTaken(m_bus, {ownComponent, QStringLiteral("com.tallowind.Quorvane")}, triggers,
                       [this](const QStringList &taken) { m_found.append(taken); });
    }

    /// Whether a search for the hide key finds nothing. A second search over the same connection, which finds
    /// something, ends later than the first.
    [[nodiscard]] bool findsNothing() {
        find(m_keys, hide);
        m_table.entries.append({QStringLiteral("control"), ownComponent, {0}});
        m_table.entries.append({QStringLiteral("other"), QStringLiteral("kwin"), {keysOfControlShiftF2}});
        PlasmaKeys control;
        find(control, {{QStringLiteral("control"), QStringLiteral("CTRL+SHIFT+F2")}});
        return spinUntil([this] { return !m_found.isEmpty(); }) &&
               m_found == QList<QStringList>{{QStringLiteral("control")}};
    }

    DesktopBus m_desktop;
    const QString m_address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    QDBusConnection m_bus = QDBusConnection::connectToBus(m_address, QStringLiteral("plasma-keys"));
    FakeTable m_table{m_address};
    PlasmaKeys m_keys;
    QList<QStringList> m_found;
};

TEST_F(PlasmaKeysTest, ShortcutWithoutKeysWhoseTriggerIsHeldIsTaken) {
    m_table.entries = {{QStringLiteral("hide"), ownComponent, {0}},
                       {QStringLiteral("stop"), ownComponent, {}},
                       {QStringLiteral("Kill Window"), QStringLiteral("kwin"), {keysOfMeta1}},
                       {QStringLiteral("Expose"), QStringLiteral("kwin"), {keysOfControlShiftF2}}};
    find(m_keys, {{QStringLiteral("hide"), QStringLiteral("LOGO+1")},
                  {QStringLiteral("stop"), QStringLiteral("CTRL+SHIFT+F2")}});
    ASSERT_TRUE(spinUntil([this] { return !m_found.isEmpty(); }));
    EXPECT_EQ(m_found, QList<QStringList>({{QStringLiteral("hide"), QStringLiteral("stop")}}));
}

TEST_F(PlasmaKeysTest, ShortcutWithItsOwnKeysIsNotTaken) {
    m_table.entries = {{QStringLiteral("hide"), ownComponent, {keysOfMeta1}}};
    EXPECT_TRUE(findsNothing());
}

TEST_F(PlasmaKeysTest, ShortcutToWhichTheUserGaveOtherKeysIsNotTaken) {
    m_table.entries = {{QStringLiteral("hide"), ownComponent, {keysOfControlShiftF2}},
                       {QStringLiteral("Kill Window"), QStringLiteral("kwin"), {keysOfMeta1}}};
    EXPECT_TRUE(findsNothing());
}

TEST_F(PlasmaKeysTest, ShortcutWithoutKeysThatNoProgramHoldsIsNotTaken) {
    m_table.entries = {{QStringLiteral("hide"), ownComponent, {0}}};
    EXPECT_TRUE(findsNothing());
}

TEST_F(PlasmaKeysTest, KeysOfTheProgramItselfAreNotTaken) {
    m_table.entries = {{QStringLiteral("hide"), ownComponent, {0}},
                       {QStringLiteral("earlier"), ownComponent, {keysOfMeta1}}};
    EXPECT_TRUE(findsNothing());
}

TEST_F(PlasmaKeysTest, CancelledSearchReportsNothing) {
    m_table.entries = {{QStringLiteral("hide"), ownComponent, {0}},
                       {QStringLiteral("Kill Window"), QStringLiteral("kwin"), {keysOfMeta1}}};
    find(m_keys, hide);
    m_keys.cancel();
    m_table.entries.removeFirst();
    EXPECT_TRUE(findsNothing());
}

} // namespace

} // namespace quorvane::platform

Q_DECLARE_METATYPE(quorvane::platform::TableEntry)
