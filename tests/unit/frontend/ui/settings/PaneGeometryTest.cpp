#include "frontend/ui/settings/PaneGeometry.h"

#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

// A window of 500 x 400 at (100, 50) whose frame and toolbar are 80 high together: the content is 320 high,
// and the OK button, 30 high, is 20 above its lower edge.
PaneGeometry::Measures measures(QSize pane) {
    return {{100, 50, 500, 400}, 320, {400, 270, 80, 30}, pane};
}

TEST(PaneGeometryTest, BandIsTwiceTheButtonsHeightAboveTheEdgePlusTheButton) {
    const auto placement = PaneGeometry::place(measures({400, 200}));
    EXPECT_EQ(placement.contentHeight, 2 * 20 + 30 + 200);
    EXPECT_EQ(placement.window.height(), 80 + 70 + 200);
}

TEST(PaneGeometryTest, UpperEdgeAndWidthStay) {
    for (const int height : {40, 200, 900}) {
        const auto placement = PaneGeometry::place(measures({400, height}));
        EXPECT_EQ(placement.window.topLeft(), QPoint(100, 50));
        EXPECT_EQ(placement.window.width(), 500);
    }
}

TEST(PaneGeometryTest, PaneIsCentredAndOverlapsTheBandByTen) {
    const auto placement = PaneGeometry::place(measures({400, 200}));
    EXPECT_EQ(placement.pane.x(), 50);
    const int lowerEdge = placement.pane.y() + 200;
    const int upperEdgeOfBand = placement.contentHeight - 70;
    EXPECT_EQ(lowerEdge - upperEdgeOfBand, 10);
}

TEST(PaneGeometryTest, HalfPixelsAreCutTowardsZero) {
    EXPECT_EQ(PaneGeometry::place(measures({399, 200})).pane.x(), 50);
    EXPECT_EQ(PaneGeometry::place(measures({503, 200})).pane.x(), -1);
}

TEST(PaneGeometryTest, WithoutAButtonThereIsNoBand) {
    PaneGeometry::Measures bare = measures({400, 200});
    bare.buttonOk = {};
    const auto placement = PaneGeometry::place(bare);
    EXPECT_EQ(placement.contentHeight, 200);
    EXPECT_EQ(placement.pane.y(), 10);
}

TEST(PaneGeometryTest, BackAndForthEndsWhereItBegan) {
    const auto tall = PaneGeometry::place(measures({400, 300}));
    const int moved = tall.contentHeight - 320; // the button keeps its distance from the lower edge
    const auto again =
        PaneGeometry::place({tall.window, tall.contentHeight, {400, 270 + moved, 80, 30}, {400, 250}});
    EXPECT_EQ(again.window, QRect(100, 50, 500, 400));
    EXPECT_EQ(again.contentHeight, 320);
}

} // namespace

} // namespace quorvane
