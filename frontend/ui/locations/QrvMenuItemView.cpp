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
            return; // the menu refuses to close
        }
    }
}

} // namespace

QrvMenuItemView::QrvMenuItemView(QWidget *parent) : QWidget(parent) {}

void QrvMenuItemView::setMenuItem(QAction *item) {
    m_item = item;
}

void QrvMenuItemView::setLabelText(QLabel *label) {
    m_label = label;
}

QMenu *QrvMenuItemView::menu() const {
    if (m_item == nullptr) {
        return nullptr;
    }
    const QList<QObject *> places = m_item->associatedObjects();
    for (QObject *place : places) {
        if (auto *found = qobject_cast<QMenu *>(place)) {
            return found;
        }
    }
    return nullptr;
}

bool QrvMenuItemView::isHighlighted() const {
    const QMenu *place = menu();
    return place != nullptr && place->activeAction() == m_item;
}

void QrvMenuItemView::mouseEntered() {
    update();
}

void QrvMenuItemView::mouseExited() {
    m_notHighlighted = true;
    update();
}

void QrvMenuItemView::mouseDown() {
    const QMenu *place = menu();
    if (place == nullptr) {
        return;
    }
    const QPointer<QAction> chosen = place->actions().value(place->actions().indexOf(m_item));
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
    const bool highlights = !m_notHighlighted && isHighlighted();
    m_notHighlighted = false;
    QPainter painter(this);
    painter.fillRect(event->rect(), highlights ? palette().color(QPalette::Highlight) : Qt::transparent);
    if (m_label == nullptr) {
        return;
    }
    const QColor text = highlights ? palette().color(QPalette::HighlightedText) : Qt::black;
    if (QPalette colours = m_label->palette(); colours.color(QPalette::WindowText) != text) {
        colours.setColor(QPalette::WindowText, text);
        m_label->setPalette(colours);
    }
}

} // namespace quorvane
