#pragma once

#include <cstdlib>
#include <memory>

namespace quorvane::platform {

struct FreeMemory {
    void operator()(void *memory) const { std::free(memory); }
};

/// A reply, event or error of xcb, which the caller must free.
template <typename T>
using XcbMemory = std::unique_ptr<T, FreeMemory>;

/// Becomes the owner of what an xcb function returned; null stays null.
template <typename T>
[[nodiscard]] XcbMemory<T> adopt(T *memory) {
    return XcbMemory<T>(memory);
}

} // namespace quorvane::platform
