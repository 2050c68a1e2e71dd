#include "ThemeStyle.h"

#include <QPainter>
#include <QStyleOption>

namespace quorvane {

namespace {

constexpr qreal cornerRadius = 3;
constexpr qreal tickWidth = 0.13; // of the box's width

QColor borderOf(QStyle::State state) {
    if (!state.testFlag(QStyle::State_Enabled)) {
        return {0x6a, 0x6a, 0x6a};
    }
    if (state.testFlag(QStyle::State_On)) {
        return {0x4f, 0x9e, 0xde};
    }
    if (state.testFlag(QStyle::State_HasFocus)) {
        return {0x7f, 0xbc, 0xec};
    }
    return state.testFlag(QStyle::State_MouseOver) ? QColor(0xc8, 0xc8, 0xc8) : QColor(0x9a, 0x9a, 0x9a);
}

void drawCheckBox(const QStyleOption &option, QPainter &painter) {
    const bool on = option.state.testFlag(QStyle::State_On);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(borderOf(option.state));
    painter.setBrush(on ? QColor(0x2f, 0x7f, 0xc4) : option.palette.color(QPalette::Base));
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    if (on) {
        const QRectF box = option.rect;
        const auto at = [&box](qreal x, qreal y) {
            return box.topLeft() + QPointF(x * box.width(), y * box.height());
        };
        painter.setPen(QPen(Qt::white, box.width() * tickWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF({at(0.25, 0.52), at(0.43, 0.7), at(0.75, 0.32)}));
    }
    painter.restore();
}

} // namespace

ThemeStyle::ThemeStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void ThemeStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                               const QWidget *widget) const {
    if (element == PE_IndicatorCheckBox) {
        drawCheckBox(*option, *painter);
    } else {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

int ThemeStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                          QStyleHintReturn *data) const {
    return hint == SH_EtchDisabledText ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
}

} // namespace quorvane
