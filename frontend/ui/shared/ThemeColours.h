#pragma once

#include <QColor>
#include <QLatin1StringView>
#include <array>

namespace quorvane {

enum class ThemeScheme { Dark, Light };

/// A colour by what it is used for, in both schemes.
struct ThemeColour {
    QLatin1StringView name;
    QLatin1StringView dark;
    QLatin1StringView light;
};

/// Texts have a contrast of at least 4.5 to 1 with what they are drawn on, apart from those of disabled
/// controls.
inline constexpr std::array themeColours{
    ThemeColour{QLatin1StringView("window"), QLatin1StringView("#404040"), QLatin1StringView("#f2f2f2")},
    ThemeColour{QLatin1StringView("text"), QLatin1StringView("#f5f5f5"), QLatin1StringView("#1e1e1e")},
    ThemeColour{QLatin1StringView("quiet"), QLatin1StringView("#bcbcbc"), QLatin1StringView("#5a5a5a")},
    ThemeColour{QLatin1StringView("warning"), QLatin1StringView("#f0b45a"), QLatin1StringView("#8a5200")},
    ThemeColour{QLatin1StringView("link"), QLatin1StringView("#74baf0"), QLatin1StringView("#1a62a8")},
    ThemeColour{QLatin1StringView("disabled"), QLatin1StringView("#969696"), QLatin1StringView("#7c7c7c")},
    // Fields, lists and tables.
    ThemeColour{QLatin1StringView("field"), QLatin1StringView("#2e2e2e"), QLatin1StringView("#ffffff")},
    ThemeColour{QLatin1StringView("list"), QLatin1StringView("#3a3a3a"), QLatin1StringView("#ffffff")},
    // Buttons.
    ThemeColour{QLatin1StringView("raised"), QLatin1StringView("#545454"), QLatin1StringView("#e2e2e2")},
    ThemeColour{QLatin1StringView("hovered"), QLatin1StringView("#606060"), QLatin1StringView("#d6d6d6")},
    ThemeColour{QLatin1StringView("pressed"), QLatin1StringView("#484848"), QLatin1StringView("#c8c8c8")},
    ThemeColour{QLatin1StringView("dimmed"), QLatin1StringView("#4a4a4a"), QLatin1StringView("#eaeaea")},
    // Frames and lines.
    ThemeColour{QLatin1StringView("border"), QLatin1StringView("#6e6e6e"), QLatin1StringView("#9a9a9a")},
    ThemeColour{QLatin1StringView("mark"), QLatin1StringView("#9a9a9a"), QLatin1StringView("#767676")},
    ThemeColour{QLatin1StringView("markHovered"), QLatin1StringView("#c8c8c8"), QLatin1StringView("#4e4e4e")},
    ThemeColour{QLatin1StringView("line"), QLatin1StringView("#5a5a5a"), QLatin1StringView("#cfcfcf")},
    ThemeColour{QLatin1StringView("ring"), QLatin1StringView("#a9d4f5"), QLatin1StringView("#1a62a8")},
    // Grounds of white texts.
    ThemeColour{QLatin1StringView("accent"), QLatin1StringView("#2b76b8"), QLatin1StringView("#2b76b8")},
    ThemeColour{QLatin1StringView("accentHovered"), QLatin1StringView("#2d79bc"),
                QLatin1StringView("#2d79bc")},
    ThemeColour{QLatin1StringView("accentPressed"), QLatin1StringView("#24659e"),
                QLatin1StringView("#24659e")},
    ThemeColour{QLatin1StringView("accentBorder"), QLatin1StringView("#4f9ede"),
                QLatin1StringView("#1f5c92")},
    ThemeColour{QLatin1StringView("stop"), QLatin1StringView("#2a8152"), QLatin1StringView("#2a8152")},
    ThemeColour{QLatin1StringView("stopHovered"), QLatin1StringView("#2c8655"), QLatin1StringView("#2c8655")},
    ThemeColour{QLatin1StringView("stopPressed"), QLatin1StringView("#226c44"), QLatin1StringView("#226c44")},
    ThemeColour{QLatin1StringView("stopBorder"), QLatin1StringView("#4fb27c"), QLatin1StringView("#1d6a40")},
    // The toolbar.
    ThemeColour{QLatin1StringView("bar"), QLatin1StringView("#363636"), QLatin1StringView("#e6e6e6")},
    ThemeColour{QLatin1StringView("barHovered"), QLatin1StringView("#444444"), QLatin1StringView("#dadada")},
    ThemeColour{QLatin1StringView("barChecked"), QLatin1StringView("#4c4c4c"), QLatin1StringView("#cdcdcd")},
};

/// A misspelt name is a defect of the caller; black then.
[[nodiscard]] constexpr QLatin1StringView themeColour(QLatin1StringView name, ThemeScheme scheme) {
    for (const ThemeColour &colour : themeColours) {
        if (colour.name == name) {
            return scheme == ThemeScheme::Dark ? colour.dark : colour.light;
        }
    }
    return QLatin1StringView("#000000");
}

} // namespace quorvane
