#include "PopUpButton.h"

#include <QPainter>

namespace quorvane {

namespace {

constexpr QSizeF arrowSize(8, 4.5);
constexpr qreal arrowMargin = 12; // between the arrow and the button's end
constexpr qreal arrowWidth = 1.7;
const QColor arrowColour(0xdd, 0xdd, 0xdd);
const QColor faintArrowColour(0x96, 0x96, 0x96);

} // namespace

void PopUpButton::paintEvent(QPaintEvent *event) {
    QComboBox::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(isEnabled() ? arrowColour : faintArrowColour, arrowWidth, Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    const bool leftwards = layoutDirection() == Qt::RightToLeft;
    const qreal left = leftwards ? arrowMargin : width() - arrowMargin - arrowSize.width();
    const qreal top = (height() - arrowSize.height()) / 2;
    painter.drawPolyline(
        QPolygonF({QPointF(left, top), QPointF(left + arrowSize.width() / 2, top + arrowSize.height()),
                   QPointF(left + arrowSize.width(), top)}));
}

} // namespace quorvane
