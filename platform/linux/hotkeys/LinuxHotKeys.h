#pragma once

#include "platform/HotKeyService.h"

#include <QString>

#include <memory>

namespace quorvane::platform {

/// What kind of session the program runs in, as far as hot keys go.
enum class HotKeyDesktop {
    X11,
    /// Also when the program itself draws over X: there, key grabs see the keys of X windows only.
    Wayland,
    None,
};

struct SessionHints {
    /// Of the GUI toolkit: "xcb", "wayland" and so on; may be empty.
    QString windowPlatform;
    /// The variables DISPLAY, WAYLAND_DISPLAY and XDG_SESSION_TYPE.
    QString display;
    QString waylandDisplay;
    QString sessionType;

    [[nodiscard]] static SessionHints ofProcess();
};

[[nodiscard]] HotKeyDesktop hotKeyDesktop(const SessionHints &hints);

/// The hot-key service of the desktop; where there is none, a service that is not available. Connects to
/// nothing by itself. Main thread.
[[nodiscard]] std::unique_ptr<HotKeyService> makeHotKeyService(HotKeyDesktop desktop);

} // namespace quorvane::platform
