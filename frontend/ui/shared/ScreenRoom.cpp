#include "ScreenRoom.h"

#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace quorvane {

namespace {

constexpr int usualTitleHeight = 32;
constexpr int usualPanelHeight = 44;

} // namespace

int roomOnScreen(const QWidget &window) {
    const QScreen &screen = *window.screen();
    const int title = std::max(window.frameGeometry().height() - window.height(), usualTitleHeight);
    const int panel = screen.availableGeometry() == screen.geometry() ? usualPanelHeight : 0;
    return screen.availableGeometry().height() - title - panel;
}

} // namespace quorvane
