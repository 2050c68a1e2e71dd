#include "LinuxHotKeys.h"

#include "PortalHotKeyService.h"
#include "X11HotKeyService.h"

#include <QGuiApplication>

namespace quorvane::platform {

namespace {

/// The service on a desktop without hot keys.
class NoHotKeyService final : public HotKeyService {
public:
    [[nodiscard]] bool isAvailable() const override { return false; }

    [[nodiscard]] HotKeyRegistration registerHotKey(quint32 /*keyCode*/, quint32 /*modifiers*/,
                                                    HotKeyIdentifier /*identifier*/) override {
        return {HotKeyError::NotAvailable, 0};
    }

    HotKeyError unregisterHotKey(HotKeyReference /*reference*/) override {
        return HotKeyError::UnknownReference;
    }

    void installEventHandler(EventHandler /*handler*/) override {}

    void installRefusalHandler(RefusalHandler /*handler*/) override {}
};

} // namespace

SessionHints SessionHints::ofProcess() {
    return {QGuiApplication::platformName(), qEnvironmentVariable("DISPLAY"),
            qEnvironmentVariable("WAYLAND_DISPLAY"), qEnvironmentVariable("XDG_SESSION_TYPE")};
}

HotKeyDesktop hotKeyDesktop(const SessionHints &hints) {
    if (hints.windowPlatform.startsWith(QLatin1String("wayland")) ||
        hints.sessionType == QLatin1String("wayland")) {
        return HotKeyDesktop::Wayland;
    }
    // A Wayland compositor may run in a window of an X11 session.
    if (!hints.waylandDisplay.isEmpty() && hints.sessionType != QLatin1String("x11")) {
        return HotKeyDesktop::Wayland;
    }
    return hints.display.isEmpty() ? HotKeyDesktop::None : HotKeyDesktop::X11;
}

std::unique_ptr<HotKeyService> makeHotKeyService(HotKeyDesktop desktop) {
    switch (desktop) {
    case HotKeyDesktop::X11:
        return std::make_unique<X11HotKeyService>();
    case HotKeyDesktop::Wayland:
        return std::make_unique<PortalHotKeyService>(
            PortalShortcuts::Settings{QString(), QGuiApplication::desktopFileName()});
    case HotKeyDesktop::None:
        break;
    }
    return std::make_unique<NoHotKeyService>();
}

} // namespace quorvane::platform
