#include "PlasmaKeys.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QKeySequence>
#include <QObject>
#include <QSet>

#include <algorithm>
#include <array>
#include <utility>

namespace quorvane::platform {

/// A sequence of up to four keys, as the table expects it.
struct PlasmaSequence {
    std::array<int, 4> keys{};
};

/// How the table compares keys: 0 for equality.
struct PlasmaMatch {
    int kind = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PlasmaSequence &sequence) {
    argument.beginStructure();
    argument.beginArray(QMetaType::fromType<int>());
    for (const int key : sequence.keys) {
        argument << key;
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PlasmaSequence & /*sequence*/) {
    return argument; // never received
}

QDBusArgument &operator<<(QDBusArgument &argument, const PlasmaMatch &match) {
    argument.beginStructure();
    argument << match.kind;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PlasmaMatch & /*match*/) {
    return argument; // never received
}

namespace {

const QString tableService = QStringLiteral("org.kde.kglobalaccel");
const QString tablePath = QStringLiteral("/kglobalaccel");
const QString tableInterface = QStringLiteral("org.kde.KGlobalAccel");
const QString componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");
constexpr int answerMilliseconds = 5000;

/// One entry of the table.
struct Entry {
    QString id;
    QString component;
    bool hasKeys = false;
};

/// The entries in a reply; none in a reply of any other form.
QList<Entry> entriesIn(const QDBusMessage &reply) {
    QList<Entry> entries;
    if (reply.signature() != QLatin1String("a(ssssssaiai)")) {
        return entries;
    }
    const auto argument = reply.arguments().at(0).value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        Entry entry;
        QString passed;
        QList<int> keys;
        QList<int> defaults;
        argument.beginStructure();
        argument >> entry.id >> passed >> entry.component >> passed >> passed >> passed >> keys >> defaults;
        argument.endStructure();
        entry.hasKeys = std::any_of(keys.cbegin(), keys.cend(), [](int key) { return key != 0; });
        entries.append(entry);
    }
    argument.endArray();
    return entries;
}

PlasmaSequence sequenceOf(const QString &trigger) {
    QString text = trigger;
    text.replace(QLatin1String("LOGO"), QLatin1String("Meta"));
    const QKeySequence sequence = QKeySequence::fromString(text, QKeySequence::PortableText);
    return {{sequence.isEmpty() ? 0 : sequence[0].toCombined(), 0, 0, 0}};
}

QDBusMessage tableCall(const QString &path, const QString &interface, const QString &method) {
    QDBusMessage message = QDBusMessage::createMethodCall(tableService, path, interface, method);
    message.setAutoStartService(false);
    return message;
}

} // namespace

/// One search: first the entries of the program, then the holders of the keys of those that have none.
class PlasmaKeys::Search : public QObject {
public:
    Search(QDBusConnection bus, QStringList components, QHash<QString, QString> triggers, Found found)
        : m_bus(std::move(bus)), m_components(std::move(components)), m_triggers(std::move(triggers)),
          m_found(std::move(found)) {}

    void start() {
        for (const QString &name : std::as_const(m_components)) {
            QDBusMessage message = tableCall(tablePath, tableInterface, QStringLiteral("getComponent"));
            message << name;
            call(message, [this](const QDBusMessage &reply) {
                if (reply.signature() == QLatin1String("o")) {
                    readComponent(reply.arguments().at(0).value<QDBusObjectPath>().path());
                }
            });
        }
    }

    /// Nothing is reported afterwards.
    void end() { m_found = {}; }

private:
    void call(const QDBusMessage &message, const std::function<void(const QDBusMessage &)> &reply) {
        ++m_pending;
        auto *const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, answerMilliseconds), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, reply] {
            const QDBusMessage answer = watcher->reply();
            watcher->deleteLater();
            reply(answer);
            if (--m_pending == 0) {
                next();
            }
        });
    }

    void readComponent(const QString &path) {
        call(tableCall(path, componentInterface, QStringLiteral("allShortcutInfos")),
             [this](const QDBusMessage &reply) {
                 for (const Entry &entry : entriesIn(reply)) {
                     if (m_triggers.contains(entry.id)) {
                         (entry.hasKeys ? m_active : m_withoutKeys).insert(entry.id);
                     }
                 }
             });
    }

    /// All replies of a step have arrived.
    void next() {
        if (!std::exchange(m_holdersRequested, true)) {
            m_withoutKeys.subtract(m_active);
            for (const QString &id : std::as_const(m_withoutKeys)) {
                requestHolders(id);
            }
        } else if (!m_taken.isEmpty() && m_found) {
            m_taken.sort();
            // The handler may end the search.
            std::exchange(m_found, {})(m_taken);
        }
    }

    void requestHolders(const QString &id) {
        QDBusMessage message = tableCall(tablePath, tableInterface, QStringLiteral("globalShortcutsByKey"));
        message << QVariant::fromValue(sequenceOf(m_triggers.value(id)))
                << QVariant::fromValue(PlasmaMatch{});
        call(message, [this, id](const QDBusMessage &reply) {
            const QList<Entry> holders = entriesIn(reply);
            if (std::any_of(holders.cbegin(), holders.cend(),
                            [this](const Entry &entry) { return !m_components.contains(entry.component); })) {
                m_taken.append(id);
            }
        });
    }

    QDBusConnection m_bus;
    const QStringList m_components;
    const QHash<QString, QString> m_triggers;
    Found m_found;
    int m_pending = 0;
    bool m_holdersRequested = false;
    QSet<QString> m_active;
    QSet<QString> m_withoutKeys;
    QStringList m_taken;
};

PlasmaKeys::PlasmaKeys() = default;
PlasmaKeys::~PlasmaKeys() = default;

void PlasmaKeys::findTaken(const QDBusConnection &bus, const QStringList &components,
                           const QHash<QString, QString> &triggers, Found found) {
    qDBusRegisterMetaType<PlasmaSequence>();
    qDBusRegisterMetaType<PlasmaMatch>();
    cancel();
    QStringList names = components;
    names.removeAll(QString());
    m_search = std::make_unique<Search>(bus, names, triggers, std::move(found));
    m_search->start();
}

void PlasmaKeys::cancel() {
    if (m_search) {
        // Not deleted here: the search may have called the handler that ends it.
        m_search->end();
        m_search.release()->deleteLater();
    }
}

} // namespace quorvane::platform

Q_DECLARE_METATYPE(quorvane::platform::PlasmaSequence)
Q_DECLARE_METATYPE(quorvane::platform::PlasmaMatch)
