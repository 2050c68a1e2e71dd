#include "ProcessInfo.h"

#include "platform/Files.h"
#include "platform/Platform.h"
#include "platform/ProcessTable.h"

#include <QtGlobal>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <new>
#include <thread>

namespace quorvane {

namespace {

/// An assertion that holds in every build: a caller that breaks it would otherwise read or leak memory.
void require(bool holds, const char *assertion) {
    if (!holds) {
        qFatal("ASSERT failure in frontend/ProcessInfo: \"%s\"", assertion);
    }
}

/// Whether this user's own OpenVPN runs: the guard holds a lock on its log meanwhile.
bool ownTunnelRuns() {
    constexpr int looks = 20;
    constexpr auto pause = std::chrono::milliseconds(10);
    const QString log = platform::Platform::current().account.documents() + QStringLiteral("/openvpn.log");
    for (int look = 0; platform::isLockedElsewhere(log); ++look) {
        if (look == looks) {
            return true;
        }
        std::this_thread::sleep_for(pause);
    }
    return false;
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
        const auto &name = records[i].name;
        m_names.append(
            QString::fromUtf8(name.data(), static_cast<qsizetype>(strnlen(name.data(), name.size()))));
    }
    m_count = static_cast<std::int32_t>(size);
}

bool ProcessInfo::isRunning(const QString &name) {
    obtainFreshProcessList();
    if (findProcessWithName(name)) {
        return true;
    }
    // Root's processes are not in the snapshot then. A kill that meets nothing would reset the session, so
    // there has to be a sign that the tunnel runs.
    return name == QLatin1String("openvpn") && !platform::Platform::current().processes->showsOtherUsers() &&
           ownTunnelRuns();
}

bool ProcessInfo::findProcessWithName(const QString &name) const {
    return m_names.contains(name);
}

} // namespace quorvane
