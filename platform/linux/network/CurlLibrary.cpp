#include "CurlLibrary.h"

#include <dlfcn.h>

namespace platform {

namespace {

/// Looks functions up in a library and remembers whether all of them were there.
class Functions {
public:
    explicit Functions(void *library) : m_library(library) {}

    template <typename Function>
    void find(const char *name, Function &function) {
        function = reinterpret_cast<Function>(::dlsym(m_library, name));
        m_complete = m_complete && function != nullptr;
    }

    [[nodiscard]] bool areComplete() const { return m_complete; }

private:
    void *m_library;
    bool m_complete = true;
};

std::optional<CurlLibrary> loadInitialised() {
    auto curl = CurlLibrary::load("libcurl.so.4");
    return curl && curl->globalInit(CURL_GLOBAL_DEFAULT) == CURLE_OK ? curl : std::nullopt;
}

} // namespace

const CurlLibrary *CurlLibrary::shared() {
    static const std::optional<CurlLibrary> library = loadInitialised();
    return library ? &*library : nullptr;
}

std::optional<CurlLibrary> CurlLibrary::load(const char *file) {
    // Stays loaded until the process ends: a name look-up that was given up may still run in it.
    void *library = ::dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return std::nullopt;
    }
    CurlLibrary curl;
    Functions functions(library);
    functions.find("curl_global_init", curl.globalInit);
    functions.find("curl_easy_init", curl.easyInit);
    functions.find("curl_easy_setopt", curl.easySetopt);
    functions.find("curl_easy_getinfo", curl.easyGetinfo);
    functions.find("curl_easy_header", curl.easyHeader);
    functions.find("curl_easy_strerror", curl.easyStrerror);
    functions.find("curl_easy_cleanup", curl.easyCleanup);
    functions.find("curl_multi_init", curl.multiInit);
    functions.find("curl_multi_setopt", curl.multiSetopt);
    functions.find("curl_multi_add_handle", curl.multiAddHandle);
    functions.find("curl_multi_remove_handle", curl.multiRemoveHandle);
    functions.find("curl_multi_socket_action", curl.multiSocketAction);
    functions.find("curl_multi_info_read", curl.multiInfoRead);
    functions.find("curl_multi_cleanup", curl.multiCleanup);
    functions.find("curl_slist_append", curl.slistAppend);
    functions.find("curl_slist_free_all", curl.slistFreeAll);
    return functions.areComplete() ? std::optional(curl) : std::nullopt;
}

} // namespace platform
