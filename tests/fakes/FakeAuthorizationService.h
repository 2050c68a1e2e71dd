#pragma once

#include "platform/AuthorizationService.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <unistd.h>
#include <vector>

namespace quorvane::fakes {

/// Privileged processes that exist only on paper. Any thread.
class FakeAuthorizationService final : public platform::AuthorizationService {
public:
    struct Launch {
        QString program;
        QStringList arguments;
        QString folder;
    };

    [[nodiscard]] bool lookUp() override {
        const std::lock_guard lock(mutex);
        ++lookUpCount;
        return present;
    }

    /// Process numbers count up from firstPid. The output descriptor reads the output set before.
    [[nodiscard]] platform::PrivilegedProcess launch(const QString &program, const QStringList &arguments,
                                                     const QString &folder) override {
        const std::lock_guard lock(mutex);
        recorded.push_back({program, arguments, folder});
        if (status != 0) {
            return {status, -1, -1};
        }
        int ends[2] = {-1, -1};
        if (pipe(ends) != 0) {
            return {toolMissing, -1, -1};
        }
        const ssize_t written = write(ends[1], output.constData(), static_cast<std::size_t>(output.size()));
        close(ends[1]);
        if (written != output.size()) {
            close(ends[0]);
            return {toolMissing, -1, -1};
        }
        return {0, nextPid++, ends[0]};
    }

    [[nodiscard]] std::optional<int> wait(pid_t pid, bool block) override {
        std::unique_lock lock(mutex);
        if (block) {
            ended.wait(lock, [this, pid] { return finished.contains(pid); });
        }
        const auto found = finished.find(pid);
        return found != finished.end() ? std::optional(found->second) : std::nullopt;
    }

    static constexpr pid_t firstPid = 4242;

    void setPresent(bool isPresent) {
        const std::lock_guard lock(mutex);
        present = isPresent;
    }

    /// What launch() answers; 0 starts.
    void setStatus(int newStatus) {
        const std::lock_guard lock(mutex);
        status = newStatus;
    }

    /// At most a pipe's capacity (64 KiB).
    void setOutput(const QByteArray &bytes) {
        const std::lock_guard lock(mutex);
        output = bytes;
    }

    /// Ends a process with a wait status.
    void finish(pid_t pid, int waitStatus) {
        {
            const std::lock_guard lock(mutex);
            finished[pid] = waitStatus;
        }
        ended.notify_all();
    }

    [[nodiscard]] int lookUps() const {
        const std::lock_guard lock(mutex);
        return lookUpCount;
    }

    [[nodiscard]] std::vector<Launch> launches() const {
        const std::lock_guard lock(mutex);
        return recorded;
    }

private:
    mutable std::mutex mutex;
    std::condition_variable ended;
    std::vector<Launch> recorded;
    std::map<pid_t, int> finished;
    QByteArray output;
    pid_t nextPid = firstPid;
    int status = 0;
    int lookUpCount = 0;
    bool present = true;
};

} // namespace quorvane::fakes
