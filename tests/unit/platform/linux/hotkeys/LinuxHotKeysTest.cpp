#include "platform/linux/hotkeys/LinuxHotKeys.h"
#include "platform/linux/hotkeys/PortalHotKeyService.h"
#include "platform/linux/hotkeys/X11HotKeyService.h"

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

using platform::hotKeyDesktop;
using platform::HotKeyDesktop;
using platform::HotKeyError;
using platform::HotKeyService;
using platform::SessionHints;

SessionHints hints(const char *windowPlatform, const char *display, const char *wayland,
                   const char *sessionType) {
    return {QString::fromLatin1(windowPlatform), QString::fromLatin1(display), QString::fromLatin1(wayland),
            QString::fromLatin1(sessionType)};
}

TEST(LinuxHotKeysTest, X11SessionHasKeyGrabs) {
    EXPECT_EQ(hotKeyDesktop(hints("xcb", ":0", "", "x11")), HotKeyDesktop::X11);
    EXPECT_EQ(hotKeyDesktop(hints("xcb", ":0", "", "tty")), HotKeyDesktop::X11) << "startx";
    EXPECT_EQ(hotKeyDesktop(hints("xcb", "localhost:10.0", "", "")), HotKeyDesktop::X11);
    EXPECT_EQ(hotKeyDesktop(hints("", ":0", "", "")), HotKeyDesktop::X11);
    EXPECT_EQ(hotKeyDesktop(hints("xcb", ":0", "wayland-1", "x11")), HotKeyDesktop::X11)
        << "a Wayland compositor in a window";
}

TEST(LinuxHotKeysTest, WaylandSessionHasThePortalAlsoForXPrograms) {
    EXPECT_EQ(hotKeyDesktop(hints("wayland", "", "wayland-0", "wayland")), HotKeyDesktop::Wayland);
    EXPECT_EQ(hotKeyDesktop(hints("wayland-egl", "", "", "")), HotKeyDesktop::Wayland);
    EXPECT_EQ(hotKeyDesktop(hints("xcb", ":0", "wayland-0", "wayland")), HotKeyDesktop::Wayland);
    EXPECT_EQ(hotKeyDesktop(hints("xcb", ":0", "wayland-0", "")), HotKeyDesktop::Wayland);
    EXPECT_EQ(hotKeyDesktop(hints("xcb", ":0", "", "wayland")), HotKeyDesktop::Wayland);
}

TEST(LinuxHotKeysTest, WithoutDisplayThereAreNoHotKeys) {
    EXPECT_EQ(hotKeyDesktop(hints("offscreen", "", "", "")), HotKeyDesktop::None);
    EXPECT_EQ(hotKeyDesktop(hints("", "", "", "tty")), HotKeyDesktop::None);
    const auto service = platform::makeHotKeyService(HotKeyDesktop::None);
    EXPECT_FALSE(service->isAvailable());
    const auto answer = service->registerHotKey(18, HotKeyService::command, {0, 1});
    EXPECT_EQ(answer.error, HotKeyError::NotAvailable);
    EXPECT_EQ(answer.reference, 0U);
    EXPECT_EQ(service->unregisterHotKey(1), HotKeyError::UnknownReference);
    service->installEventHandler([](const platform::HotKeyIdentifier &) {});
    service->installRefusalHandler([](platform::HotKeyReference, HotKeyError) {});
}

TEST(LinuxHotKeysTest, X11GetsKeyGrabs) {
    const auto service = platform::makeHotKeyService(HotKeyDesktop::X11);
    EXPECT_NE(dynamic_cast<platform::X11HotKeyService *>(service.get()), nullptr);
}

TEST(LinuxHotKeysTest, WaylandGetsThePortal) {
    const auto service = platform::makeHotKeyService(HotKeyDesktop::Wayland);
    EXPECT_NE(dynamic_cast<platform::PortalHotKeyService *>(service.get()), nullptr);
}

} // namespace

} // namespace quorvane::platform
