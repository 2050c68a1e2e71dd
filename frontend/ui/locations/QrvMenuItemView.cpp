#include "QrvMenuItemView.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QPaintEvent>
#include <QPainter>

namespace quorvane {

namespace {

/// Closes every menu that is open, the innermost first.
void cancelTracking() {
    while (QWidget *popup = QApplication::activePopupWidget()) {
        popup->close();
        if (QApplication::activePopupWidget() == popup) {
            return; // it will not close
        }
    }
}

} // namespace

QrvMenuItemView::QrvMenuItemView(QWidget *parent) : QWidget(parent) {}

void QrvMenuItemView::setMenuItem(QAction *newItem) {
    item = newItem;
}

void QrvMenuItemView::setLabelText(QLabel *newLabel) {
    label = newLabel;
}

QMenu *QrvMenuItemView::menu() const {
    if (item == nullptr) {
        return nullptr;
    }
    const QList<QObject *> places = item->associatedObjects();
    for (QObject *place : places) {
        if (auto *found = qobject_cast<QMenu *>(place)) {
            return found;
        }
    }
    return nullptr;
}

bool QrvMenuItemView::isHighlighted() const {
    const QMenu *place = menu();
    return place != nullptr && place->activeAction() == item;
}

void QrvMenuItemView::mouseEntered() {
    update();
}

void QrvMenuItemView::mouseExited() {
    notHighlighted = true;
    update();
}

void QrvMenuItemView::mouseDown() {
    const QMenu *place = menu();
    if (place == nullptr) {
        return;
    }
    const QPointer<QAction> chosen = place->actions().value(place->actions().indexOf(item));
    cancelTracking();
    if (chosen != nullptr) {
        chosen->trigger();
    }
}

void QrvMenuItemView::enterEvent(QEnterEvent * /*event*/) {
    mouseEntered();
}

void QrvMenuItemView::leaveEvent(QEvent * /*event*/) {
    mouseExited();
}

void QrvMenuItemView::mousePressEvent(QMouseEvent * /*event*/) {
    mouseDown();
}

void QrvMenuItemView::paintEvent(QPaintEvent *event) {
    const bool highlights = !notHighlighted && isHighlighted();
    notHighlighted = false;
    QPainter painter(this);
    painter.fillRect(event->rect(), highlights ? palette().color(QPalette::Highlight) : Qt::transparent);
    if (label == nullptr) {
        return;
    }
    const QColor text = highlights ? palette().color(QPalette::HighlightedText) : Qt::black;
    if (QPalette colours = label->palette(); colours.color(QPalette::WindowText) != text) {
        colours.setColor(QPalette::WindowText, text);
        label->setPalette(colours);
    }
}

} // namespace quorvane
