#pragma once

#include <functional>

namespace quorvane::platform {

enum class ColorScheme { NoPreference, Dark, Light };

/// What the user has chosen for every program of the desktop, as far as it is known.
struct DesktopAppearance {
    ColorScheme scheme = ColorScheme::NoPreference;
    /// The user does not want anything on the screen to move by itself.
    bool reducesMotion = false;

    bool operator==(const DesktopAppearance &) const = default;
};

/// The desktop's appearance. Main thread.
class Appearance {
public:
    using Observer = std::function<void()>;

    virtual ~Appearance() = default;

    /// The last one known; no preference before the desktop has answered, and without such a desktop.
    [[nodiscard]] virtual DesktopAppearance current() const = 0;
    /// Called after each change, in place of an earlier observer. An empty one ends that.
    virtual void setObserver(Observer observer) = 0;
};

} // namespace quorvane::platform
