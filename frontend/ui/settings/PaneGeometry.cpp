#include "PaneGeometry.h"

namespace quorvane {

namespace {

/// Pixels by which the pane overlaps the button band.
constexpr int overlap = 10;

/// Distance of the rectangle's lower edge from the content's lower edge; 0 for an empty rectangle.
int heightAbove(const QRect &rectangle, int contentHeight) {
    return rectangle.isEmpty() ? 0 : contentHeight - (rectangle.y() + rectangle.height());
}

} // namespace

PaneGeometry::Placement PaneGeometry::place(const Measures &measures) {
    const int okY = heightAbove(measures.buttonOk, measures.contentHeight);
    const int okHeight = measures.buttonOk.isEmpty() ? 0 : measures.buttonOk.height();
    const int bottom = 2 * okY + okHeight;
    const int chrome = measures.window.height() - measures.contentHeight;
    const int newHeight = chrome + bottom + measures.pane.height();

    Placement placement;
    placement.window = {measures.window.x(), measures.window.y(), measures.window.width(), newHeight};
    placement.contentHeight = newHeight - chrome;
    const int paneX = (measures.window.width() - measures.pane.width()) / 2;
    const int paneLowerEdge = bottom - overlap;
    placement.pane = {paneX, placement.contentHeight - paneLowerEdge - measures.pane.height()};
    return placement;
}

} // namespace quorvane
