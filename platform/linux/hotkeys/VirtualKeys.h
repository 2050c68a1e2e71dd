#pragma once

#include <QtGlobal>

namespace quorvane::platform {

/// One key of the ANSI keyboard that can be part of a hot key.
struct HotKeyKey {
    quint32 keyCode;
    /// The X key code of that position: the kernel's code plus eight.
    quint8 position;
    /// The X name of what an ANSI keyboard has there.
    const char *symbol;
};

/// The key with a virtual key code, nullptr for a code that is not known. Any thread.
[[nodiscard]] const HotKeyKey *findHotKeyKey(quint32 keyCode);

} // namespace quorvane::platform
