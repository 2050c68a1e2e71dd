#include "WindowOrder.h"

#include <QApplication>
#include <QDialog>
#include <QWindow>

namespace quorvane {

namespace {

bool isOnScreen(const QWidget &window) {
    const bool isProper = window.windowType() == Qt::Window || window.windowType() == Qt::Dialog;
    return isProper && window.isVisible() && !window.isMinimized();
}

bool floats(const QWidget &window) {
    return window.windowFlags().testFlag(Qt::WindowStaysOnTopHint);
}

/// The window that covers the others, apart from `except`; null if none is on the screen.
QWidget *windowInFront(const QWidget &except) {
    QWidget *found = QApplication::activeModalWidget();
    if (found != nullptr && found != &except) {
        return found;
    }
    found = nullptr;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window == &except || !isOnScreen(*window)) {
            continue;
        }
        const bool isBetter = found == nullptr || (floats(*window) && !floats(*found)) ||
                              (window->isActiveWindow() && floats(*window) == floats(*found));
        found = isBetter ? window : found;
    }
    return found;
}

/// The window system keeps a window above the one that it belongs to, if both are on the same level.
void attach(QWidget &modal, QWidget &front) {
    modal.winId(); // creates the window
    modal.windowHandle()->setTransientParent(front.windowHandle());
    if (floats(front)) {
        setFloating(modal, true);
    }
}

} // namespace

void bringForward(QWidget &window) {
    if (window.isMinimized()) {
        window.showNormal();
    } else {
        window.show();
    }
    QWidget *modal = QApplication::activeModalWidget();
    if (modal != nullptr && modal != &window) {
        attach(*modal, window);
        window.raise();
        modal->raise();
        modal->activateWindow();
        return;
    }
    window.raise();
    window.activateWindow();
}

void showModally(QDialog &dialog) {
    dialog.setModal(true);
    if (QWidget *front = windowInFront(dialog)) {
        attach(dialog, *front);
    }
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
}

void setFloating(QWidget &window, bool floats) {
    // Not by the widget's own setter: it would create a new window and lose the focus, and style all controls
    // anew even before there is a window.
    Qt::WindowFlags flags = window.windowFlags();
    window.overrideWindowFlags(flags.setFlag(Qt::WindowStaysOnTopHint, floats));
    if (QWindow *handle = window.windowHandle()) {
        handle->setFlag(Qt::WindowStaysOnTopHint, floats);
    }
}

} // namespace quorvane
