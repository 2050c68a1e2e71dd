#include "WindowOrder.h"

#include <QWidget>

namespace quorvane {

void bringForward(QWidget &window) {
    if (window.isMinimized()) {
        window.showNormal();
    } else {
        window.show();
    }
    window.raise();
    window.activateWindow();
}

} // namespace quorvane
