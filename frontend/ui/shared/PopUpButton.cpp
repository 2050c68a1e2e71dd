#include "PopUpButton.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>

namespace quorvane {

namespace {

constexpr QSizeF arrowSize(8, 4.5);
constexpr qreal arrowMargin = 12; // between the arrow and the button's end
constexpr qreal arrowWidth = 1.7;

/// Whether the key moves the selection of a plain combo box.
bool movesSelection(const QKeyEvent &event) {
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return true;
    default:
        return false;
    }
}

/// Whether the key types a character that the list is searched for. A blank opens the list like a button.
bool isTyped(const QKeyEvent &event) {
    const bool plain = (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
    return plain && !event.text().isEmpty() && event.text().at(0).isPrint() && event.key() != Qt::Key_Space;
}

/// Whether the key opens the list of a plain combo box, or belongs to the window around it.
bool leavesSelection(const QKeyEvent &event) {
    switch (event.key()) {
    case Qt::Key_F4:
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return true;
    default:
        return false;
    }
}

} // namespace

void PopUpButton::paintEvent(QPaintEvent *event) {
    QComboBox::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        QPen(palette().color(QPalette::ButtonText), arrowWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const bool leftwards = layoutDirection() == Qt::RightToLeft;
    const qreal left = leftwards ? arrowMargin : width() - arrowMargin - arrowSize.width();
    const qreal top = (height() - arrowSize.height()) / 2;
    painter.drawPolyline(
        QPolygonF({QPointF(left, top), QPointF(left + arrowSize.width() / 2, top + arrowSize.height()),
                   QPointF(left + arrowSize.width(), top)}));
}

void PopUpButton::keyPressEvent(QKeyEvent *event) {
    const bool typed = isTyped(*event);
    if (typed || (movesSelection(*event) && !event->modifiers().testFlag(Qt::ControlModifier))) {
        showPopup();
        if (typed) {
            view()->keyboardSearch(event->text());
        }
    } else if (leavesSelection(*event)) {
        QComboBox::keyPressEvent(event);
    } else {
        event->ignore();
    }
}

void PopUpButton::wheelEvent(QWheelEvent *event) {
    event->ignore();
}

} // namespace quorvane
