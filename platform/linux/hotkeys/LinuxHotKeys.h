#pragma once

#include "platform/HotKeyService.h"

#include <QString>

#include <memory>

namespace quorvane::platform {

/// The kind of session, as far as it matters for hot keys.
enum class HotKeyDesktop {
    X11,
    /// Also when the program itself draws through X: there, key grabs receive only the keys of X windows.
    Wayland,
    None,
};

struct SessionHints {
    /// The GUI toolkit's platform: "xcb", "wayland" and so on; may be empty.
    QString windowPlatform;
    /// The variables DISPLAY, WAYLAND_DISPLAY and XDG_SESSION_TYPE.
    QString display;
    QString waylandDisplay;
    QString sessionType;

    [[nodiscard]] static SessionHints ofProcess();
};

[[nodiscard]] HotKeyDesktop hotKeyDesktop(const SessionHints &hints);

/// Creates the hot-key service of the desktop; on a desktop without hot keys, a service that is not
/// available. Does not connect to the desktop yet. Main thread.
[[nodiscard]] std::unique_ptr<HotKeyService> makeHotKeyService(HotKeyDesktop desktop);

} // namespace quorvane::platform
