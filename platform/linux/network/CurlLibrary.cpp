#include "CurlLibrary.h"

#include "platform/linux/process/LateLibrary.h"

namespace quorvane::platform {

namespace {

std::optional<CurlLibrary> loadInitialised() {
    auto curl = CurlLibrary::load(QStringLiteral("libcurl.so.4"));
    return curl && curl->globalInit(CURL_GLOBAL_DEFAULT) == CURLE_OK ? curl : std::nullopt;
}

} // namespace

const CurlLibrary *CurlLibrary::shared() {
    static const std::optional<CurlLibrary> library = loadInitialised();
    return library ? &*library : nullptr;
}

std::optional<CurlLibrary> CurlLibrary::load(const QString &file) {
    LateLibrary library(file);
    CurlLibrary curl;
    library.find("curl_global_init", curl.globalInit);
    library.find("curl_easy_init", curl.easyInit);
    library.find("curl_easy_setopt", curl.easySetopt);
    library.find("curl_easy_getinfo", curl.easyGetinfo);
    library.find("curl_easy_header", curl.easyHeader);
    library.find("curl_easy_strerror", curl.easyStrerror);
    library.find("curl_easy_cleanup", curl.easyCleanup);
    library.find("curl_multi_init", curl.multiInit);
    library.find("curl_multi_setopt", curl.multiSetopt);
    library.find("curl_multi_add_handle", curl.multiAddHandle);
    library.find("curl_multi_remove_handle", curl.multiRemoveHandle);
    library.find("curl_multi_socket_action", curl.multiSocketAction);
    library.find("curl_multi_info_read", curl.multiInfoRead);
    library.find("curl_multi_cleanup", curl.multiCleanup);
    library.find("curl_slist_append", curl.slistAppend);
    library.find("curl_slist_free_all", curl.slistFreeAll);
    return library.isComplete() ? std::optional(curl) : std::nullopt;
}

} // namespace quorvane::platform
