#include "platform/linux/desktop/PortalAppearance.h"

#include "tests/Text.h"

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

DesktopAppearance with(const char *space, const char *key, const QVariant &value) {
    return PortalAppearance::with({}, text(space), text(key), value);
}

TEST(PortalAppearanceTest, SchemesOfThePortal) {
    const auto scheme = [](uint value) {
        return with("org.freedesktop.appearance", "color-scheme", value).scheme;
    };
    EXPECT_EQ(scheme(0), ColorScheme::NoPreference);
    EXPECT_EQ(scheme(1), ColorScheme::Dark);
    EXPECT_EQ(scheme(2), ColorScheme::Light);
    EXPECT_EQ(scheme(3), ColorScheme::NoPreference);
}

TEST(PortalAppearanceTest, MotionIsReducedWithoutAnimations) {
    EXPECT_TRUE(with("org.gnome.desktop.interface", "enable-animations", false).reducesMotion);
    EXPECT_FALSE(with("org.gnome.desktop.interface", "enable-animations", true).reducesMotion);
}

TEST(PortalAppearanceTest, OtherSettingsAndOtherTypesChangeNothing) {
    const DesktopAppearance before{ColorScheme::Light, true};
    const auto unchanged = [&before](const char *space, const char *key, const QVariant &value) {
        return PortalAppearance::with(before, text(space), text(key), value) == before;
    };
    EXPECT_TRUE(unchanged("org.freedesktop.appearance", "color-scheme", text("1")));
    EXPECT_TRUE(unchanged("org.freedesktop.appearance", "color-scheme", QVariant()));
    EXPECT_TRUE(unchanged("org.freedesktop.appearance", "accent-color", 1U));
    EXPECT_TRUE(unchanged("org.example", "color-scheme", 1U));
    EXPECT_TRUE(unchanged("org.gnome.desktop.interface", "enable-animations", 1U));
    EXPECT_TRUE(unchanged("org.gnome.desktop.interface", "color-scheme", true));
}

TEST(PortalAppearanceTest, WithoutABusThereIsNoPreference) {
    const PortalAppearance appearance{QDBusConnection(QString())};
    EXPECT_EQ(appearance.current(), DesktopAppearance());
}

} // namespace

} // namespace quorvane::platform
