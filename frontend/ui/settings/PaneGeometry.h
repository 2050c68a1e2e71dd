#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace quorvane {

/// Where a pane of the settings window goes and how high the window becomes for it.
///
/// Reckoned upwards from the content's lower edge, as the button band at the bottom sets the measure; the
/// results are in Qt's direction, downwards from the upper edge. Pixels.
namespace PaneGeometry {

struct Measures {
    /// The window with its frame above and below; as wide as its content.
    QRect window;
    /// Height of the content below frame and toolbar.
    int contentHeight = 0;
    /// The OK button in the content; an empty rectangle if there is none.
    QRect buttonOk;
    QSize pane;
};

struct Placement {
    /// In the same measure; the upper edge stays where it was.
    QRect window;
    int contentHeight = 0;
    /// The pane's upper left corner in the content.
    QPoint pane;
};

[[nodiscard]] Placement place(const Measures &measures);

} // namespace PaneGeometry

} // namespace quorvane
