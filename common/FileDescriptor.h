#pragma once

#include <unistd.h>
#include <utility>

namespace quorvane {

/// Owns one file descriptor and closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;

    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}

    ~FileDescriptor() { reset(); }

    FileDescriptor(FileDescriptor &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}

    FileDescriptor &operator=(FileDescriptor &&other) noexcept {
        if (this != &other) {
            reset(std::exchange(other.m_descriptor, -1));
        }
        return *this;
    }

    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    [[nodiscard]] int get() const { return m_descriptor; }

    [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }

    /// Gives the descriptor away, open.
    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }

    void reset(int number = -1) {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
        m_descriptor = number;
    }

private:
    int m_descriptor = -1;
};

} // namespace quorvane
