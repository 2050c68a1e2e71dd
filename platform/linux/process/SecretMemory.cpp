#include "SecretMemory.h"

#include <QStringEncoder>

#include <cstring>
#include <sys/mman.h>

namespace quorvane::platform {

SecretMemory::SecretMemory(QStringView text) {
    QStringEncoder encoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    m_capacity = static_cast<std::size_t>(encoder.requiredSpace(text.size())) + 1;
    void *const pages =
        ::mmap(nullptr, m_capacity, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        return;
    }
    m_pages = pages;
    ::mlock(m_pages, m_capacity);
    ::madvise(m_pages, m_capacity, MADV_DONTDUMP);
    ::madvise(m_pages, m_capacity, MADV_DONTFORK);
    auto *const begin = static_cast<char *>(m_pages);
    char *const end = encoder.appendToBuffer(begin, text);
    *end = '\n';
    m_line = QByteArray::fromRawData(begin, end + 1 - begin);
}

SecretMemory::~SecretMemory() {
    if (m_pages != nullptr) {
        ::explicit_bzero(m_pages, m_capacity);
        ::munmap(m_pages, m_capacity);
    }
}

} // namespace quorvane::platform
