#pragma once

#include <unistd.h>
#include <utility>

namespace quorvane {

/// Owns one file descriptor and closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;

    explicit FileDescriptor(int number) : m_number(number) {}

    ~FileDescriptor() { reset(); }

    FileDescriptor(FileDescriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}

    FileDescriptor &operator=(FileDescriptor &&other) noexcept {
        if (this != &other) {
            reset(std::exchange(other.m_number, -1));
        }
        return *this;
    }

    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    /// The number, or -1 when nothing is open.
    [[nodiscard]] int get() const { return m_number; }

    [[nodiscard]] bool isOpen() const { return m_number >= 0; }

    /// Returns the open descriptor, which then belongs to the caller.
    [[nodiscard]] int release() { return std::exchange(m_number, -1); }

    /// Closes the descriptor and owns `number` instead.
    void reset(int number = -1) {
        if (m_number >= 0) {
            ::close(m_number);
        }
        m_number = number;
    }

private:
    int m_number = -1;
};

} // namespace quorvane
