#include "SecretServiceKeyStore.h"

#include "SecretLibrary.h"

#include <memory>

namespace quorvane::platform {

namespace {

constexpr char identifierKey[] = "identifier";
constexpr char accountKey[] = "account";
constexpr char labelKey[] = "label";

const SecretSchema *schema() {
    static const SecretSchema instance = [] {
        SecretSchema made{};
        made.name = "com.tallowind.Quorvane.Password";
        made.flags = SECRET_SCHEMA_NONE;
        made.attributes[0] = {identifierKey, SECRET_SCHEMA_ATTRIBUTE_STRING};
        made.attributes[1] = {accountKey, SECRET_SCHEMA_ATTRIBUTE_STRING};
        made.attributes[2] = {labelKey, SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return &instance;
}

/// Only called when the library is there, which every function of the key store checks first.
const SecretLibrary &secret() {
    return *SecretLibrary::shared();
}

void unrefObject(void *object) {
    secret().objectUnref(object);
}

struct ErrorHolder {
    ErrorHolder() = default;

    ~ErrorHolder() { g_clear_error(&error); }

    ErrorHolder(const ErrorHolder &) = delete;
    ErrorHolder &operator=(const ErrorHolder &) = delete;

    GError *error = nullptr;
};

struct ObjectList {
    explicit ObjectList(GList *items) : first(items) {}

    ~ObjectList() { g_list_free_full(first, &unrefObject); }

    ObjectList(const ObjectList &) = delete;
    ObjectList &operator=(const ObjectList &) = delete;

    GList *first;
};

using Attributes = std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)>;
using Value = std::unique_ptr<SecretValue, void (*)(SecretValue *)>;

using Service = std::unique_ptr<SecretService, decltype(&unrefObject)>;

/// Null when there is none.
Service openService() {
    if (SecretLibrary::shared() == nullptr) {
        return {nullptr, &unrefObject};
    }
    ErrorHolder holder;
    return {secret().serviceGetSync(SECRET_SERVICE_LOAD_COLLECTIONS, nullptr, &holder.error), &unrefObject};
}

void dropValue(SecretValue *value) {
    if (value != nullptr) {
        secret().valueUnref(value);
    }
}

Attributes attributesOf(const KeyStore::Item &item) {
    const QByteArray identifier = item.identifier.toUtf8();
    return {secret().attributesBuild(schema(), identifierKey, identifier.constData(), accountKey,
                                     item.account.toUtf8().constData(), labelKey, identifier.constData(),
                                     nullptr),
            &g_hash_table_unref};
}

Value valueOf(const KeyStore::Item &item) {
    return {secret().valueNew(item.password.constData(), item.password.size(), "text/plain"), &dropValue};
}

/// Changes secret, attributes and label of an existing item. Items are distinguished by their attributes, and
/// the account is one of them, so storing the item again would create a second one.
bool change(SecretItem *item, const KeyStore::Item &wanted) {
    ErrorHolder holder;
    const Value value = valueOf(wanted);
    const Attributes attributes = attributesOf(wanted);
    return secret().itemSetSecretSync(item, value.get(), nullptr, &holder.error) != FALSE &&
           secret().itemSetAttributesSync(item, schema(), attributes.get(), nullptr, &holder.error) != FALSE;
}

} // namespace

std::optional<QByteArray> SecretServiceKeyStore::password(const QString &identifier) {
    if (SecretLibrary::shared() == nullptr) {
        return std::nullopt;
    }
    ErrorHolder holder;
    const Value value(secret().passwordLookupBinarySync(schema(), nullptr, &holder.error, identifierKey,
                                                        identifier.toUtf8().constData(), nullptr),
                      &dropValue);
    if (value == nullptr) {
        return std::nullopt;
    }
    gsize size = 0;
    const gchar *bytes = secret().valueGet(value.get(), &size);
    return QByteArray(bytes, static_cast<qsizetype>(size));
}

bool SecretServiceKeyStore::add(const Item &item) {
    if (SecretLibrary::shared() == nullptr) {
        return false;
    }
    ErrorHolder holder;
    const Value value = valueOf(item);
    const Attributes attributes = attributesOf(item);
    return secret().passwordStorevBinarySync(schema(), attributes.get(), SECRET_COLLECTION_DEFAULT,
                                             item.identifier.toUtf8().constData(), value.get(), nullptr,
                                             &holder.error) != FALSE;
}

bool SecretServiceKeyStore::update(const Item &item) {
    const auto service = openService();
    if (service == nullptr) {
        return false;
    }
    ErrorHolder holder;
    const Attributes wanted(
        secret().attributesBuild(schema(), identifierKey, item.identifier.toUtf8().constData(), nullptr),
        &g_hash_table_unref);
    const ObjectList found(secret().serviceSearchSync(service.get(), schema(), wanted.get(),
                                                      SECRET_SEARCH_UNLOCK, nullptr, &holder.error));
    if (found.first == nullptr) {
        return false;
    }
    return change(static_cast<SecretItem *>(found.first->data), item);
}

void SecretServiceKeyStore::remove(const QString &identifier) {
    if (SecretLibrary::shared() == nullptr) {
        return;
    }
    ErrorHolder holder;
    secret().passwordClearSync(schema(), nullptr, &holder.error, identifierKey,
                               identifier.toUtf8().constData(), nullptr);
}

std::optional<QStringList> SecretServiceKeyStore::accounts(const QString &label) {
    const auto service = openService();
    if (service == nullptr) {
        return std::nullopt;
    }
    ErrorHolder holder;
    const Attributes wanted(secret().attributesBuild(schema(), labelKey, label.toUtf8().constData(), nullptr),
                            &g_hash_table_unref);
    const ObjectList found(secret().serviceSearchSync(service.get(), schema(), wanted.get(),
                                                      SECRET_SEARCH_ALL, nullptr, &holder.error));
    if (holder.error != nullptr) {
        return std::nullopt;
    }
    QStringList names;
    for (const GList *entry = found.first; entry != nullptr; entry = entry->next) {
        const Attributes attributes(secret().itemGetAttributes(static_cast<SecretItem *>(entry->data)),
                                    &g_hash_table_unref);
        const auto *account = static_cast<const char *>(g_hash_table_lookup(attributes.get(), accountKey));
        names.append(QString::fromUtf8(account != nullptr ? account : ""));
    }
    return names;
}

} // namespace quorvane::platform
