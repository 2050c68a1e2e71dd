#pragma once

#include "platform/AuthorizationService.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <unistd.h>
#include <vector>

namespace quorvane::fakes {

/// Records privileged processes without starting any. Any thread.
class FakeAuthorizationService final : public platform::AuthorizationService {
public:
    struct Launch {
        QString program;
        QByteArrayList arguments;
        QString folder;
    };

    [[nodiscard]] bool lookUp() override {
        const std::lock_guard lock(m_mutex);
        ++m_lookUpCount;
        return m_present;
    }

    /// Process numbers count up from firstPid. The output descriptor delivers the output that was set before.
    [[nodiscard]] platform::PrivilegedProcess launch(const QString &program, const QByteArrayList &arguments,
                                                     const QString &folder) override {
        const std::lock_guard lock(m_mutex);
        m_recorded.push_back({program, arguments, folder});
        if (m_status != 0) {
            return {m_status, -1, -1};
        }
        int ends[2] = {-1, -1};
        if (pipe(ends) != 0) {
            return {toolMissing, -1, -1};
        }
        const ssize_t written =
            write(ends[1], m_output.constData(), static_cast<std::size_t>(m_output.size()));
        close(ends[1]);
        if (written != m_output.size()) {
            close(ends[0]);
            return {toolMissing, -1, -1};
        }
        return {0, m_nextPid++, ends[0]};
    }

    [[nodiscard]] std::optional<int> wait(pid_t pid, bool block) override {
        std::unique_lock lock(m_mutex);
        if (block) {
            m_ended.wait(lock, [this, pid] { return m_finished.contains(pid); });
        }
        const auto found = m_finished.find(pid);
        return found != m_finished.end() ? std::optional(found->second) : std::nullopt;
    }

    static constexpr pid_t firstPid = 4242;

    void setPresent(bool isPresent) {
        const std::lock_guard lock(m_mutex);
        m_present = isPresent;
    }

    /// Sets the status that launch() returns; 0 means success.
    void setStatus(int newStatus) {
        const std::lock_guard lock(m_mutex);
        m_status = newStatus;
    }

    /// Sets the output of later processes, at most a pipe's capacity (64 KiB).
    void setOutput(const QByteArray &bytes) {
        const std::lock_guard lock(m_mutex);
        m_output = bytes;
    }

    /// Ends a process with a wait status.
    void finish(pid_t pid, int waitStatus) {
        {
            const std::lock_guard lock(m_mutex);
            m_finished[pid] = waitStatus;
        }
        m_ended.notify_all();
    }

    [[nodiscard]] int lookUps() const {
        const std::lock_guard lock(m_mutex);
        return m_lookUpCount;
    }

    [[nodiscard]] std::vector<Launch> launches() const {
        const std::lock_guard lock(m_mutex);
        return m_recorded;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_ended;
    std::vector<Launch> m_recorded;
    std::map<pid_t, int> m_finished;
    QByteArray m_output;
    pid_t m_nextPid = firstPid;
    int m_status = 0;
    int m_lookUpCount = 0;
    bool m_present = true;
};

} // namespace quorvane::fakes
