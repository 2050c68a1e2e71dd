#pragma once

#include <QByteArray>
#include <QStringView>

#include <cstddef>

namespace quorvane::platform {

/// A secret text and a line feed, in UTF-8, in memory pages of its own: left out of core dumps, kept out of
/// swap as far as the user's limit permits (RLIMIT_MEMLOCK), not inherited by children, and overwritten at
/// the end. The text that it is made from is the caller's. Any thread.
class SecretMemory {
public:
    explicit SecretMemory(QStringView text);
    ~SecretMemory();
    SecretMemory(const SecretMemory &) = delete;
    SecretMemory &operator=(const SecretMemory &) = delete;

    /// Refers to the pages without a copy; valid while this object exists. Null without memory.
    [[nodiscard]] const QByteArray &line() const { return m_line; }

private:
    void *m_pages = nullptr;
    std::size_t m_capacity = 0;
    QByteArray m_line;
};

} // namespace quorvane::platform
