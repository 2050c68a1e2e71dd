#include "ProcessInfo.h"

#include "platform/Files.h"
#include "platform/Platform.h"
#include "platform/ProcessTable.h"

#include <QByteArray>
#include <QtGlobal>
#include <cerrno>
#include <cstring>
#include <new>

namespace quorvane {

namespace {

QByteArray nameOf(const platform::ProcessRecord &record) {
    return {record.name.data(), static_cast<qsizetype>(strnlen(record.name.data(), record.name.size()))};
}

/// An assertion that holds in every build: a caller that breaks it would otherwise read or leak memory.
void require(bool holds, const char *assertion) {
    if (!holds) {
        qFatal("ASSERT failure in frontend/ProcessInfo: \"%s\"", assertion);
    }
}

/// Whether this user's own OpenVPN runs, which holds a lock on its log.
bool ownTunnelRuns() {
    return platform::isLockedElsewhere(platform::Platform::current().account.documents() +
                                       QStringLiteral("/openvpn.log"));
}

} // namespace

int ProcessInfo::getBSDProcessList(std::unique_ptr<platform::ProcessRecord[]> *procList,
                                   std::size_t *procCount) {
    require(procList != nullptr, "procList != NULL");
    require(*procList == nullptr, "*procList == NULL");
    require(procCount != nullptr, "procCount != NULL");
    *procCount = 0;
    const platform::ProcessTable &table = *platform::Platform::current().processes;
    for (;;) {
        std::size_t size = 0;
        if (const int error = table.query(nullptr, size); error != 0) {
            return error;
        }
        std::unique_ptr<platform::ProcessRecord[]> records(new (std::nothrow) platform::ProcessRecord[size]);
        if (!records) {
            return ENOMEM;
        }
        const int error = table.query(records.get(), size);
        if (error == 0) {
            *procList = std::move(records);
            *procCount = size;
            return 0;
        }
        if (error != ENOMEM) { // ENOMEM: the table grew between the two queries
            return error;
        }
    }
}

void ProcessInfo::obtainFreshProcessList() {
    std::unique_ptr<platform::ProcessRecord[]> records;
    std::size_t size = 0;
    m_names.clear();
    if (getBSDProcessList(&records, &size) != 0) {
        m_count = -1;
        return;
    }
    m_names.reserve(static_cast<qsizetype>(size));
    for (std::size_t i = 0; i < size; ++i) {
        m_names.append(QString::fromUtf8(nameOf(records[i])));
    }
    m_count = static_cast<std::int32_t>(size);
}

RunningProcesses::Found ProcessInfo::find(const QString &name) {
    constexpr qint64 firstProcess = 1; // of every machine; it belongs to root
    std::unique_ptr<platform::ProcessRecord[]> records;
    std::size_t size = 0;
    Found found;
    if (getBSDProcessList(&records, &size) != 0) {
        return found;
    }
    const bool showsOthers = platform::Platform::current().processes->showsOtherUsers();
    const QByteArray wanted = name.toUtf8();
    for (std::size_t i = 0; i < size; ++i) {
        found.seesAll = found.seesAll || (showsOthers && records[i].pid == firstProcess);
        if (nameOf(records[i]) == wanted) {
            found.ids.insert(records[i].pid);
        }
    }
    // A kill that meets nothing would reset the session, so there has to be a sign that the tunnel runs.
    if (found.ids.isEmpty() && !showsOthers && name == QLatin1String("openvpn") && ownTunnelRuns()) {
        found.ids.insert(0);
    }
    return found;
}

bool ProcessInfo::findProcessWithName(const QString &name) const {
    return m_names.contains(name);
}

} // namespace quorvane
