#pragma once

#include <unistd.h>
#include <utility>

namespace quorvane {

/// Owns one file descriptor and closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;

    explicit FileDescriptor(int number) : descriptor(number) {}

    ~FileDescriptor() { reset(); }

    FileDescriptor(FileDescriptor &&other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}

    FileDescriptor &operator=(FileDescriptor &&other) noexcept {
        if (this != &other)
            reset(std::exchange(other.descriptor, -1));
        return *this;
    }

    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    [[nodiscard]] int get() const { return descriptor; }

    [[nodiscard]] bool isOpen() const { return descriptor >= 0; }

    /// Gives the descriptor away, open.
    [[nodiscard]] int release() { return std::exchange(descriptor, -1); }

    void reset(int number = -1) {
        if (descriptor >= 0)
            ::close(descriptor);
        descriptor = number;
    }

private:
    int descriptor = -1;
};

} // namespace quorvane
