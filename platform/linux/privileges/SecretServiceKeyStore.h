#pragma once

#include "platform/KeyStore.h"

namespace quorvane::platform {

/// KeyStore over the desktop's Secret Service, in its default collection. Without that service every call
/// finds nothing and stores nothing. Any thread but the main one.
class SecretServiceKeyStore final : public KeyStore {
public:
    [[nodiscard]] std::optional<QByteArray> password(const QString &identifier) override;
    bool add(const Item &item) override;
    bool update(const Item &item) override;
    void remove(const QString &identifier) override;
    [[nodiscard]] std::optional<QStringList> accounts(const QString &label) override;
};

} // namespace quorvane::platform
