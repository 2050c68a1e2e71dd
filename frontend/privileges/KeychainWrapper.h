#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>
#include <optional>

namespace quorvane {

/// One password item per identifier in the desktop's key store. Nothing in the program uses it yet. Calls may
/// wait for the user, so they do not belong on the main thread.
class KeychainWrapper {
public:
    /// A query for the item: its class, and the identifier as generic attribute, label and service.
    [[nodiscard]] static QVariantMap newSearchDictionary(const QString &identifier);
    /// The query turned into one that returns the password of a generic item.
    [[nodiscard]] static QVariantMap secItemFormatToDictionary(const QVariantMap &record);
    /// The stored password's bytes; absent when there is no such item.
    [[nodiscard]] static std::optional<QByteArray> searchKeychainCopyMatching(const QString &identifier);
    /// False if an item with this identifier exists already, or the store refuses.
    static bool createKeychainValue(const QString &password, const QString &userName,
                                    const QString &identifier);
    static bool updateKeychainValue(const QString &password, const QString &userName,
                                    const QString &identifier);
    static void deleteKeychainValue(const QString &identifier);
    /// The account of the last item with this label; the empty text on any failure.
    [[nodiscard]] static QString getKeychainUserName(const QString &label);
};

} // namespace quorvane
