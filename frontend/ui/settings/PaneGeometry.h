#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace quorvane {

/// Computes the position of a pane of the settings window and the window's height for it.
///
/// The computation counts upwards from the content's lower edge, because it starts from the button band
/// there; the results are in Qt's direction, downwards from the upper edge. Pixels.
namespace PaneGeometry {

struct Measures {
    /// The window including its frame above and below, with the width of its content.
    QRect window;
    /// Height of the content below frame and toolbar.
    int contentHeight = 0;
    /// The OK button in the content; an empty rectangle if there is none.
    QRect buttonOk;
    QSize pane;
};

struct Placement {
    /// Like Measures::window; the upper edge has not moved.
    QRect window;
    int contentHeight = 0;
    /// The pane's upper left corner in the content.
    QPoint pane;
};

[[nodiscard]] Placement place(const Measures &measures);

} // namespace PaneGeometry

} // namespace quorvane
