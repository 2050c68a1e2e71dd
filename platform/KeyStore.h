#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

namespace quorvane::platform {

/// One password per identifier in the desktop's key store. Calls may wait for the user to unlock the store,
/// so they must not run on the main thread. A failure of the store is reported as "no item".
class KeyStore {
public:
    struct Item {
        /// Used for the generic attribute, the label and the service.
        QString identifier;
        QString account;
        QByteArray password;
    };

    virtual ~KeyStore() = default;

    /// The password of the first item with this identifier.
    [[nodiscard]] virtual std::optional<QByteArray> password(const QString &identifier) = 0;
    /// Adds the item; false when the store refuses.
    virtual bool add(const Item &item) = 0;
    /// Replaces password and account of the item with this identifier; false when there is none.
    virtual bool update(const Item &item) = 0;
    virtual void remove(const QString &identifier) = 0;
    /// Accounts of all items with this label, in the store's order; absent on any failure.
    [[nodiscard]] virtual std::optional<QStringList> accounts(const QString &label) = 0;
};

} // namespace quorvane::platform
