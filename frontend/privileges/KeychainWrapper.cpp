#include "KeychainWrapper.h"

#include "platform/KeyStore.h"
#include "platform/Platform.h"

namespace quorvane {

namespace {

platform::KeyStore &store() {
    return *platform::Platform::current().keyStore;
}

} // namespace

QVariantMap KeychainWrapper::newSearchDictionary(const QString &identifier) {
    return {{QStringLiteral("class"), QStringLiteral("internet password")},
            {QStringLiteral("generic"), identifier},
            {QStringLiteral("label"), identifier},
            {QStringLiteral("service"), identifier}};
}

QVariantMap KeychainWrapper::secItemFormatToDictionary(const QVariantMap &record) {
    QVariantMap copy = record;
    copy.insert(QStringLiteral("return data"), true);
    copy.insert(QStringLiteral("class"), QStringLiteral("generic password"));
    return copy;
}

std::optional<QByteArray> KeychainWrapper::searchKeychainCopyMatching(const QString &identifier) {
    return store().password(identifier);
}

bool KeychainWrapper::createKeychainValue(const QString &password, const QString &userName,
                                          const QString &identifier) {
    return !searchKeychainCopyMatching(identifier) && store().add({identifier, userName, password.toUtf8()});
}

bool KeychainWrapper::updateKeychainValue(const QString &password, const QString &userName,
                                          const QString &identifier) {
    return store().update({identifier, userName, password.toUtf8()});
}

void KeychainWrapper::deleteKeychainValue(const QString &identifier) {
    store().remove(identifier);
}

QString KeychainWrapper::getKeychainUserName(const QString &label) {
    const auto accounts = store().accounts(label);
    return accounts && !accounts->isEmpty() ? accounts->last() : QStringLiteral("");
}

} // namespace quorvane
