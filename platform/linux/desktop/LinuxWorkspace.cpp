#include "LinuxWorkspace.h"

#include "SessionBus.h"
#include "platform/Files.h"
#include "platform/linux/files/AtomicFile.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

/// An absolute path from the environment; empty otherwise.
QString folderFrom(const char *variable) {
    const QString path = QFile::decodeName(qgetenv(variable));
    return path.startsWith(u'/') ? path : QString();
}

/// Whether the folder belongs to the user and no other user can open it.
bool isPrivate(const QString &folder) {
    struct stat status {};

    return !folder.isEmpty() && ::lstat(QFile::encodeName(folder).constData(), &status) == 0 &&
           S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() && (status.st_mode & 077U) == 0;
}

QString fileNameFor(const QString &identifier) {
    QString name = identifier;
    return name.replace(u'/', u'_') + QStringLiteral(".lock");
}

FileDescriptor openLockFile(const QString &folder, const QString &identifier) {
    if (!isPrivate(folder)) {
        return {};
    }
    const QString path = folder + QLatin1Char('/') + fileNameFor(identifier);
    return FileDescriptor(
        ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
}

/// The program as one argument of an Exec line: quoted for the line, then escaped as a value.
QString execArgument(const QString &program) {
    QString word;
    for (const QChar unit : program) {
        if (unit == u'\\') {
            word += QStringLiteral("\\\\\\\\");
        } else if (unit == u'"' || unit == u'`' || unit == u'$') {
            word += QStringLiteral("\\\\") + unit;
        } else if (unit == u'%') {
            word += QStringLiteral("%%");
        } else {
            word += unit;
        }
    }
    return QLatin1Char('"') + word + QLatin1Char('"');
}

} // namespace

WorkspaceFolders WorkspaceFolders::ofUser(const QString &home) {
    WorkspaceFolders found{folderFrom("XDG_RUNTIME_DIR"), folderFrom("XDG_CONFIG_HOME"),
                           folderFrom("XDG_CACHE_HOME")};
    if (found.runtime.isEmpty()) {
        found.runtime = QStringLiteral("/run/user/%1").arg(::geteuid());
    }
    if (found.configuration.isEmpty()) {
        found.configuration = home + QStringLiteral("/.config");
    }
    if (found.cache.isEmpty()) {
        found.cache = home + QStringLiteral("/.cache");
    }
    return found;
}

LinuxWorkspace::LinuxWorkspace(const WorkspaceFolders &folders) : m_folders(folders) {}

bool LinuxWorkspace::openUrl(const QString &url) {
    const QUrl address(url, QUrl::StrictMode);
    const bool isWeb =
        address.scheme() == QStringLiteral("https") || address.scheme() == QStringLiteral("http");
    return address.isValid() && isWeb && QDesktopServices::openUrl(address);
}

bool LinuxWorkspace::openPage(const QString &path) {
    return QFileInfo(path).isFile() && QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

bool LinuxWorkspace::acquireSingleInstance(const QString &identifier) {
    if (m_instances.contains(identifier)) {
        return true;
    }
    FileDescriptor file = openLockFile(m_folders.runtime, identifier);
    if (!file.isOpen()) {
        const QString fallback =
            m_folders.cache + QLatin1Char('/') + fileNameFor(identifier) + QStringLiteral(".d");
        if (makePrivateFolders(fallback) == 0) {
            file = openLockFile(fallback, identifier);
        }
    }
    if (!file.isOpen()) {
        return true;
    }
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return errno != EWOULDBLOCK;
    }
    m_instances.emplace(identifier, std::move(file));
    return true;
}

bool LinuxWorkspace::setAutostart(const QString &program, bool enabled) {
    const bool isWritable = std::none_of(program.begin(), program.end(),
                                         [](QChar unit) { return unit.category() == QChar::Other_Control; });
    const QString folder = m_folders.configuration + QStringLiteral("/autostart");
    if (program.isEmpty() || !isWritable || makePrivateFolders(folder) != 0) {
        return false;
    }
    const QString entry =
        QStringLiteral("[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=Quorvane\n"
                       "Exec=%1 -hide\n"
                       "Terminal=false\n"
                       "X-GNOME-Autostart-enabled=%2\n"
                       "Hidden=%3\n")
            .arg(execArgument(program), enabled ? QStringLiteral("true") : QStringLiteral("false"),
                 enabled ? QStringLiteral("false") : QStringLiteral("true"));
    return replaceFile(folder + QStringLiteral("/com.tallowind.Quorvane.desktop"), entry.toUtf8()) == 0;
}

void LinuxWorkspace::notify(const QString &title, const QString &text) {
    if (!isSessionBusThere()) {
        return;
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const QString service = QStringLiteral("org.freedesktop.Notifications");
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/Notifications"), service, QStringLiteral("Notify"));
    constexpr uint replacesNone = 0;
    constexpr int serverDefaultTimeout = -1;
    // The title is plain text; the body may be read as markup.
    call << QStringLiteral("Quorvane") << replacesNone << QString() << title << text.toHtmlEscaped()
         << QStringList() << QVariantMap() << serverDefaultTimeout;
    bus.asyncCall(call);
}

} // namespace quorvane::platform
