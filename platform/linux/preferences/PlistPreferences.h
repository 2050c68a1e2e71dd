#pragma once

#include "platform/PreferencesStore.h"

#include <functional>
#include <mutex>
#include <optional>

namespace quorvane::platform {

/// Preferences in one property list file, shared by threads and by processes.
///
/// Every setValues() writes the file before it returns: it locks the lock file beside it, reads what other
/// processes wrote meanwhile, applies its own changes to that and replaces the file atomically (mode 600,
/// folders 0700). Changes that cannot be written stay in memory and are retried with the next change or
/// synchronize().
///
/// A file that is not a property list is renamed to "<name>.corrupt-<UTC time>" and written again from the
/// values that this process knows. A file that belongs to another user or cannot be read is not changed. A
/// file that was removed counts as a reset: the next change creates it again with every value that this
/// process has set, and without the others. Each problem is reported once.
class PlistPreferences final : public PreferencesStore {
public:
    using Problem = std::function<void(const QString &text)>;

    /// Reads the file. While another process holds the lock, waits at most that many milliseconds; then
    /// continues without the lock, because the holder must have been stopped or be faulty.
    explicit PlistPreferences(const QString &path, int lockMilliseconds = 2000);

    [[nodiscard]] QVariant value(const QString &key) const override;
    void setValues(const QVariantMap &values) override;
    void setValuesUnwritten(const QVariantMap &values) override;
    bool synchronize() override;
    [[nodiscard]] QString filePath() const override;

    /// Sets the handler for problems from now on; it is called at once for earlier ones. Later calls come
    /// from the thread that met the problem, which may be any; the handler may read preferences but not
    /// change them.
    void setProblemHandler(Problem handler);

private:
    /// The contents of the file when it was read.
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

    /// One exchange with the file at a time; locked before `mutex`.
    std::mutex m_exchanging;

    /// Guards the members below. Never held while waiting for the disk, so that reads do not wait for it
    /// either.
    mutable std::mutex m_mutex;
    /// The values that value() returns.
    QVariantMap m_view;
    /// The contents of the file after the last exchange.
    QVariantMap m_known;
    /// Changes that are not in the file yet; an invalid variant means a removal.
    QVariantMap m_pending;
    /// All changes of this process so far.
    QVariantMap m_ownChanges;

    Problem m_problemHandler;
    QStringList m_unreported;
    QString m_lastProblem;
};

} // namespace quorvane::platform
