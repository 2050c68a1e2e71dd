#pragma once

#include <libsecret/secret.h>

#include <QString>
#include <optional>

namespace quorvane::platform {

/// The functions of libsecret that the key store uses, loaded at the first call: the library and those that
/// it needs would cost more than 2 ms and 1 MiB at every start, and most runs need no key store.
struct SecretLibrary {
    /// The library of this process; null when it cannot be loaded. Any thread.
    [[nodiscard]] static const SecretLibrary *shared();
    /// Absent when the file, or a function in it, is missing.
    [[nodiscard]] static std::optional<SecretLibrary> load(const QString &file);

    decltype(&::secret_service_get_sync) serviceGetSync = nullptr;
    decltype(&::secret_service_search_sync) serviceSearchSync = nullptr;
    decltype(&::secret_attributes_build) attributesBuild = nullptr;
    decltype(&::secret_value_new) valueNew = nullptr;
    decltype(&::secret_value_get) valueGet = nullptr;
    decltype(&::secret_value_unref) valueUnref = nullptr;
    decltype(&::secret_item_set_secret_sync) itemSetSecretSync = nullptr;
    decltype(&::secret_item_set_attributes_sync) itemSetAttributesSync = nullptr;
    decltype(&::secret_item_get_attributes) itemGetAttributes = nullptr;
    decltype(&::secret_password_lookup_binary_sync) passwordLookupBinarySync = nullptr;
    decltype(&::secret_password_storev_binary_sync) passwordStorevBinarySync = nullptr;
    decltype(&::secret_password_clear_sync) passwordClearSync = nullptr;
    decltype(&::g_object_unref) objectUnref = nullptr;
};

} // namespace quorvane::platform
