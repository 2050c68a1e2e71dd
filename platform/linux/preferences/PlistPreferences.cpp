#include "PlistPreferences.h"

#include "PropertyListChecks.h"
#include "platform/Files.h"
#include "platform/PropertyList.h"
#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/FileLock.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

void apply(QVariantMap &values, const QVariantMap &changes) {
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (change->isValid()) {
            values.insert(change.key(), *change);
        } else {
            values.remove(change.key());
        }
    }
}

/// Whether the file can hold the value.
bool isStorable(const QVariant &value) {
    switch (value.typeId()) {
    case QMetaType::UnknownType: // a removal
    case QMetaType::LongLong:
    case QMetaType::Bool:
    case QMetaType::Double:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QDateTime:
    case QMetaType::QVariantList:
    case QMetaType::QVariantMap:
    case QMetaType::QStringList:
        return true;
    default:
        return false;
    }
}

} // namespace

PlistPreferences::PlistPreferences(const QString &path, int lockMilliseconds)
    : m_path(path), m_lockLimit(lockMilliseconds) {
    synchronize();
}

QVariant PlistPreferences::value(const QString &key) const {
    const std::lock_guard lock(m_mutex);
    return m_view.value(key);
}

void PlistPreferences::setValues(const QVariantMap &values) {
    setValuesUnwritten(values);
    synchronize();
}

void PlistPreferences::setValuesUnwritten(const QVariantMap &values) {
    const std::lock_guard lock(m_mutex);
    QVariantMap changes;
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        const QVariant kept = canonical(*entry);
        if (isStorable(kept)) {
            changes.insert(entry.key(), kept);
        }
    }
    apply(m_view, changes);
    m_pending.insert(changes);
    m_ownChanges.insert(changes);
}

bool PlistPreferences::synchronize() {
    const std::lock_guard lock(m_exchanging);
    return exchange();
}

QString PlistPreferences::filePath() const {
    return m_path;
}

void PlistPreferences::setProblemHandler(Problem handler) {
    QStringList waiting;
    {
        const std::lock_guard lock(m_mutex);
        m_problemHandler = handler;
        waiting.swap(m_unreported);
    }
    for (const QString &text : std::as_const(waiting)) {
        handler(text);
    }
}

bool PlistPreferences::exchange() {
    QVariantMap changes;
    {
        const std::lock_guard lock(m_mutex);
        changes = m_pending;
    }
    // No folder is created while there is nothing to write and no file to read.
    const QString folder = QFileInfo(m_path).path();
    if (!changes.isEmpty()) {
        const int failure = makePrivateFolders(folder);
        if (failure != 0) {
            report(
                QStringLiteral("The folder %1 cannot be created: %2").arg(folder, qt_error_string(failure)));
        }
    }
    const FileLock lock(m_path + QStringLiteral(".lock"), m_lockLimit);
    if (lock.hasTimedOut()) {
        report(QStringLiteral("%1.lock is held by another process for too long; continuing without it")
                   .arg(m_path));
    }
    const Contents found = read();
    if (!found.usable) {
        return false;
    }
    QVariantMap wanted = found.values;
    apply(wanted, changes);
    if (!store(found, wanted)) {
        return false;
    }
    const std::lock_guard guard(m_mutex);
    m_known = wanted;
    // Another thread may have changed a key meanwhile; such a change stays pending.
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (m_pending.value(change.key()) == *change) {
            m_pending.remove(change.key());
        }
    }
    m_view = wanted;
    apply(m_view, m_pending);
    m_lastProblem.clear();
    return true;
}

PlistPreferences::Contents PlistPreferences::read() {
    struct stat status {};

    if (::lstat(QFile::encodeName(m_path).constData(), &status) != 0) {
        if (errno != ENOENT && errno != ENOTDIR) {
            report(QStringLiteral("%1 cannot be read: %2").arg(m_path, qt_error_string(errno)));
            return {{}, false, false};
        }
        Contents own{{}, true, true};
        const std::lock_guard lock(m_mutex);
        apply(own.values, m_ownChanges);
        own.mustBeWritten = !m_pending.isEmpty();
        return own;
    }
    if (status.st_uid != ::geteuid()) {
        report(QStringLiteral("%1 belongs to another user and is not used").arg(m_path));
        return {{}, false, false};
    }
    QByteArray bytes;
    int failure = readPlainFile(m_path, PropertyList::maximumSize, bytes);
    // If the file belongs to the user but lost the owner's permissions, they are restored, because its
    // contents count.
    if (failure == EACCES && S_ISREG(status.st_mode) &&
        ::chmod(QFile::encodeName(m_path).constData(), S_IRUSR | S_IWUSR) == 0) {
        failure = readPlainFile(m_path, PropertyList::maximumSize, bytes);
    }
    if (failure != 0 && failure != EFBIG) {
        report(QStringLiteral("%1 cannot be read: %2").arg(m_path, qt_error_string(failure)));
        return {{}, false, false};
    }
    const auto values = failure == 0 ? PropertyList::parse(bytes) : std::nullopt;
    return values ? Contents{*values, true, false} : recoverFromCorruption();
}

PlistPreferences::Contents PlistPreferences::recoverFromCorruption() {
    const QString aside = moveAside();
    if (aside.isNull()) {
        report(QStringLiteral("%1 is not a property list and cannot be renamed: %2")
                   .arg(m_path, qt_error_string(errno)));
        return {{}, false, false};
    }
    report(QStringLiteral("%1 was not a property list; it is kept as %2").arg(m_path, aside));
    const std::lock_guard lock(m_mutex);
    return {m_known, true, !m_known.isEmpty()};
}

bool PlistPreferences::store(const Contents &found, const QVariantMap &wanted) {
    if (!found.mustBeWritten && wanted == found.values) {
        return true;
    }
    const int failure = replaceFile(m_path, PropertyList::write(wanted));
    if (failure != 0) {
        report(QStringLiteral("%1 cannot be written: %2").arg(m_path, qt_error_string(failure)));
    }
    return failure == 0;
}

QString PlistPreferences::moveAside() const {
    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    const QString base = m_path + QStringLiteral(".corrupt-") + stamp;
    constexpr int attempts = 100;
    for (int i = 0; i < attempts; ++i) {
        const QString aside = i == 0 ? base : base + QLatin1Char('-') + QString::number(i);
        if (::renameat2(AT_FDCWD, QFile::encodeName(m_path).constData(), AT_FDCWD,
                        QFile::encodeName(aside).constData(), RENAME_NOREPLACE) == 0) {
            QFile::setPermissions(aside, QFile::ReadOwner | QFile::WriteOwner);
            return aside;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return {};
}

void PlistPreferences::report(const QString &text) {
    Problem handler;
    {
        const std::lock_guard lock(m_mutex);
        if (text == m_lastProblem) {
            return;
        }
        m_lastProblem = text;
        handler = m_problemHandler;
        if (!handler) {
            m_unreported.append(text);
        }
    }
    if (handler) {
        handler(text);
    }
}

} // namespace quorvane::platform
