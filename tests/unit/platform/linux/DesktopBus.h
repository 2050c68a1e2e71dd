#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <utility>

namespace quorvane::platform {

/// A session bus, a home folder and a runtime folder of the test, in the environment for its lifetime.
class DesktopBus {
public:
    DesktopBus() {
        set("HOME", m_folder.path().toUtf8());
        set("XDG_RUNTIME_DIR", m_folder.path().toUtf8());
        m_bus.start(QStringLiteral("dbus-daemon"),
                    {QStringLiteral("--config-file=") + writeConfiguration(), QStringLiteral("--nofork"),
                     QStringLiteral("--print-address")});
        if (m_bus.waitForStarted() && m_bus.waitForReadyRead()) {
            set("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
        }
    }

    ~DesktopBus() {
        m_bus.kill();
        m_bus.waitForFinished();
        for (const auto &[name, value] : std::as_const(m_before)) {
            if (value.isNull()) {
                qunsetenv(name);
            } else {
                qputenv(name, value);
            }
        }
    }

    DesktopBus(const DesktopBus &) = delete;
    DesktopBus &operator=(const DesktopBus &) = delete;

    [[nodiscard]] static bool isUp() { return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"); }

    /// Waits until a program on the bus owns the name.
    [[nodiscard]] static bool waitForName(const QString &name) {
        const QString connection = QStringLiteral("wait");
        bool owned = false;
        {
            const QDBusConnection bus =
                QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), connection);
            for (int i = 0; i < 1000 && !owned; ++i) {
                owned = bus.interface() != nullptr && bus.interface()->isServiceRegistered(name);
                QThread::msleep(owned ? 0 : 10);
            }
        }
        QDBusConnection::disconnectFromBus(connection);
        return owned;
    }

    [[nodiscard]] QString home() const { return m_folder.path(); }

private:
    /// A session bus that starts no installed services: only what a test starts is on it.
    [[nodiscard]] QString writeConfiguration() const {
        const QString name = m_folder.filePath(QStringLiteral("bus.conf"));
        QFile file(name);
        if (file.open(QIODevice::WriteOnly)) {
            file.write("<busconfig><type>session</type><listen>unix:dir=" + m_folder.path().toUtf8() +
                       "</listen><policy context=\"default\"><allow send_destination=\"*\"/>"
                       "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>");
        }
        return name;
    }

    void set(const char *name, const QByteArray &value) {
        m_before.append({name, qgetenv(name)});
        qputenv(name, value);
    }

    QTemporaryDir m_folder;
    QProcess m_bus;
    /// The environment of the program without this bus; a null value means that there was no such variable.
    QList<std::pair<const char *, QByteArray>> m_before;
};

} // namespace quorvane::platform
