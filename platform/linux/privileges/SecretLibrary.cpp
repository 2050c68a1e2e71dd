#include "SecretLibrary.h"

#include "platform/linux/process/LateLibrary.h"

namespace quorvane::platform {

const SecretLibrary *SecretLibrary::shared() {
    static const std::optional<SecretLibrary> library = load(QStringLiteral("libsecret-1.so.0"));
    return library ? &*library : nullptr;
}

std::optional<SecretLibrary> SecretLibrary::load(const QString &file) {
    LateLibrary library(file);
    SecretLibrary secret;
    library.find("secret_service_get_sync", secret.serviceGetSync);
    library.find("secret_service_search_sync", secret.serviceSearchSync);
    library.find("secret_attributes_build", secret.attributesBuild);
    library.find("secret_value_new", secret.valueNew);
    library.find("secret_value_get", secret.valueGet);
    library.find("secret_value_unref", secret.valueUnref);
    library.find("secret_item_set_secret_sync", secret.itemSetSecretSync);
    library.find("secret_item_set_attributes_sync", secret.itemSetAttributesSync);
    library.find("secret_item_get_attributes", secret.itemGetAttributes);
    library.find("secret_password_lookup_binary_sync", secret.passwordLookupBinarySync);
    library.find("secret_password_storev_binary_sync", secret.passwordStorevBinarySync);
    library.find("secret_password_clear_sync", secret.passwordClearSync);
    library.find("g_object_unref", secret.objectUnref); // of a library that comes with it
    return library.isComplete() ? std::optional(secret) : std::nullopt;
}

} // namespace quorvane::platform
