#pragma once

#include <QString>
#include <QStringList>
#include <mutex>

namespace quorvane {

/// The VPN user names and passwords seen lately, so that no diagnostic line shows one. Any thread.
class OneTimeSecrets {
public:
    [[nodiscard]] static OneTimeSecrets &shared();

    /// Empty texts are ignored; the oldest secrets are forgotten beyond a bound.
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
