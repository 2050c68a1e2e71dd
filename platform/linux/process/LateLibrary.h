#pragma once

#include <QLibrary>

namespace quorvane::platform {

/// A shared library that is loaded when it is needed and not at the start, where it would cost time and
/// memory. It stays loaded until the process ends, because its threads may run that long.
class LateLibrary {
public:
    explicit LateLibrary(const QString &file) : m_library(file) {}

    /// Looks a function up; without it, or without the library, the library is not complete.
    template <typename Function>
    void find(const char *name, Function &function) {
        function = reinterpret_cast<Function>(m_library.resolve(name));
        m_isComplete = m_isComplete && function != nullptr;
    }

    [[nodiscard]] bool isComplete() const { return m_isComplete; }

private:
    QLibrary m_library;
    bool m_isComplete = true;
};

} // namespace quorvane::platform
