#pragma once

#include "platform/PreferencesStore.h"

#include <functional>
#include <mutex>
#include <optional>

namespace quorvane::platform {

/// Preferences in one property list file, shared by threads and by processes.
///
/// Every setValues() writes the file before it returns: it takes the lock file beside it, reads what
/// other processes wrote meanwhile, changes its own keys in that and replaces the file atomically (mode
/// 600, folders 0700). What cannot be written stays in memory and is tried again with the next change
/// or synchronize().
///
/// A file that is no property list is moved aside as "<name>.corrupt-<UTC time>" and rewritten from what
/// this process knows. A file that belongs to another user or cannot be read is left alone. A file that
/// somebody removed counts as a reset: the next change recreates it with every value that this process
/// has set, and the others are gone. Each trouble is reported once in plain words.
class PlistPreferences final : public PreferencesStore {
public:
    using Problem = std::function<void(const QString &text)>;

    /// Reads the file. A process that holds the lock is waited for at most so long; then the work goes
    /// on without the lock, for the holder must be stopped or gone wrong.
    explicit PlistPreferences(const QString &path, int lockMilliseconds = 2000);

    [[nodiscard]] QVariant value(const QString &key) const override;
    void setValues(const QVariantMap &values) override;
    bool synchronize() override;
    [[nodiscard]] QString filePath() const override;

    /// Takes the troubles met from now on, and at once those met before. Called on the thread that met
    /// one, which may be any; it may read preferences but not change them.
    void setProblemHandler(Problem handler);

private:
    /// What the file held when it was read.
    struct Contents {
        QVariantMap values;
        bool usable = true;
        bool mustBeWritten = false;
    };

    [[nodiscard]] bool exchange();
    [[nodiscard]] Contents read();
    [[nodiscard]] Contents recoverFromCorruption();
    [[nodiscard]] bool store(const Contents &found, const QVariantMap &wanted);
    [[nodiscard]] QString moveAside() const;
    void report(const QString &text);

    const QString m_path;
    const int m_lockLimit;

    /// One exchange with the file at a time; taken before `mutex`.
    std::mutex m_exchanging;

    /// Guards what follows. Never held while waiting for the disk, so that reads do not wait either.
    mutable std::mutex m_mutex;
    /// What value() answers.
    QVariantMap m_view;
    /// What the file held after the last exchange.
    QVariantMap m_known;
    /// Changes that have not reached the file; an invalid variant is a removal.
    QVariantMap m_pending;
    /// Every change of this process so far.
    QVariantMap m_ownChanges;

    Problem m_problemHandler;
    QStringList m_undelivered;
    QString m_lastProblem;
};

} // namespace quorvane::platform
