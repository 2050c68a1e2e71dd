#pragma once

#include <QtGlobal>

namespace quorvane::platform {

/// One key of the ANSI keyboard that can be part of a hot key.
struct VirtualKey {
    quint32 keyCode;
    /// The X key code of that position: the kernel's code plus eight.
    quint8 position;
    /// The X name of the key at this position of an ANSI keyboard.
    const char *symbol;
};

/// The key with the virtual key code; nullptr for an unknown code. Any thread.
[[nodiscard]] const VirtualKey *findVirtualKey(quint32 keyCode);

} // namespace quorvane::platform
