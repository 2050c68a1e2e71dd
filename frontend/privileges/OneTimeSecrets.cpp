#include "OneTimeSecrets.h"

namespace quorvane {

OneTimeSecrets &OneTimeSecrets::shared() {
    static OneTimeSecrets instance;
    return instance;
}

void OneTimeSecrets::add(const QString &secret) {
    const std::lock_guard lock(mutex);
    if (secret.isEmpty() || secrets.contains(secret)) {
        return;
    }
    secrets.append(secret);
    if (secrets.size() > kept) {
        secrets.removeFirst();
    }
}

QString OneTimeSecrets::masked(const QString &text) const {
    const std::lock_guard lock(mutex);
    QString result = text;
    for (const QString &secret : secrets) {
        result.replace(secret, QStringLiteral("*****"));
    }
    return result;
}

void OneTimeSecrets::clear() {
    const std::lock_guard lock(mutex);
    secrets.clear();
}

} // namespace quorvane
