#pragma once

#include <curl/curl.h>

#include <QString>
#include <optional>

namespace quorvane::platform {

/// The functions of libcurl that downloads use. They are loaded at the first request and not linked: libcurl
/// comes with some thirty other libraries, whose loading would make every start slower by a fifth.
struct CurlLibrary {
    /// The library of this process, initialised; null when it cannot be loaded. Any thread.
    [[nodiscard]] static const CurlLibrary *shared();
    /// Absent when the file, or a function in it, is missing.
    [[nodiscard]] static std::optional<CurlLibrary> load(const QString &file);

    decltype(&::curl_global_init) globalInit = nullptr;
    decltype(&::curl_easy_init) easyInit = nullptr;
    decltype(&::curl_easy_setopt) easySetopt = nullptr;
    decltype(&::curl_easy_getinfo) easyGetinfo = nullptr;
    decltype(&::curl_easy_header) easyHeader = nullptr;
    decltype(&::curl_easy_strerror) easyStrerror = nullptr;
    decltype(&::curl_easy_cleanup) easyCleanup = nullptr;
    decltype(&::curl_multi_init) multiInit = nullptr;
    decltype(&::curl_multi_setopt) multiSetopt = nullptr;
    decltype(&::curl_multi_add_handle) multiAddHandle = nullptr;
    decltype(&::curl_multi_remove_handle) multiRemoveHandle = nullptr;
    decltype(&::curl_multi_socket_action) multiSocketAction = nullptr;
    decltype(&::curl_multi_info_read) multiInfoRead = nullptr;
    decltype(&::curl_multi_cleanup) multiCleanup = nullptr;
    decltype(&::curl_slist_append) slistAppend = nullptr;
    decltype(&::curl_slist_free_all) slistFreeAll = nullptr;
};

} // namespace quorvane::platform
