#pragma once

#include <dlfcn.h>

namespace platform {

/// A shared library that is loaded when it is needed and not at the start, where it would cost time and
/// memory. It stays loaded until the process ends, because its threads may run that long.
class LateLibrary {
public:
    explicit LateLibrary(const char *file) : m_library(::dlopen(file, RTLD_NOW | RTLD_LOCAL)) {}

    /// Looks a function up; without it, or without the library, the library is not complete.
    template <typename Function>
    void find(const char *name, Function &function) {
        function = m_library == nullptr ? nullptr : reinterpret_cast<Function>(::dlsym(m_library, name));
        m_isComplete = m_isComplete && function != nullptr;
    }

    [[nodiscard]] bool isComplete() const { return m_isComplete; }

private:
    void *m_library;
    bool m_isComplete = true;
};

} // namespace platform
