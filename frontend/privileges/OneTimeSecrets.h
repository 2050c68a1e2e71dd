#pragma once

#include <QString>
#include <QStringList>
#include <mutex>

namespace quorvane {

/// The most recent VPN user names and passwords, which are masked in every diagnostic line. Any thread.
class OneTimeSecrets {
public:
    [[nodiscard]] static OneTimeSecrets &shared();

    /// Empty texts are ignored; above a maximum number the oldest secret is removed.
    void add(const QString &secret);
    /// The text with every known secret replaced by "*****".
    [[nodiscard]] QString masked(const QString &text) const;
    void clear();

private:
    static constexpr qsizetype kept = 32;

    mutable std::mutex m_mutex;
    QStringList m_secrets;
};

} // namespace quorvane
