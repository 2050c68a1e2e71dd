#include "OneTimeSecrets.h"

namespace quorvane {

OneTimeSecrets &OneTimeSecrets::shared() {
    static OneTimeSecrets instance;
    return instance;
}

void OneTimeSecrets::add(const QString &secret) {
    const std::lock_guard lock(m_mutex);
    if (secret.isEmpty() || m_secrets.contains(secret)) {
        return;
    }
    m_secrets.append(secret);
    if (m_secrets.size() > kept) {
        m_secrets.removeFirst();
    }
}

QString OneTimeSecrets::masked(const QString &text) const {
    const std::lock_guard lock(m_mutex);
    QString result = text;
    for (const QString &secret : m_secrets) {
        result.replace(secret, QStringLiteral("*****"));
    }
    return result;
}

void OneTimeSecrets::clear() {
    const std::lock_guard lock(m_mutex);
    m_secrets.clear();
}

} // namespace quorvane
