#include "ThemeStyle.h"

#include "ThemeColours.h"
#include "ThemeScope.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>
#include <QWidget>

namespace quorvane {

namespace {

constexpr qreal cornerRadius = 3;
constexpr qreal fieldRadius = 6;
constexpr qreal ringWidth = 2;
constexpr qreal tickWidth = 0.13; // of the box's width
constexpr QSizeF arrowSize(7, 4);
constexpr qreal arrowWidth = 1.5;

QColor colourFor(const QWidget *widget, const char *name) {
    return {themeColour(QLatin1StringView(name), ThemeScope::schemeOf(widget))};
}

QColor borderOf(const QStyleOption &option, const QWidget *widget) {
    const QStyle::State state = option.state;
    if (!state.testFlag(QStyle::State_Enabled)) {
        return colourFor(widget, "border");
    }
    if (state.testFlag(QStyle::State_On)) {
        return colourFor(widget, "accentBorder");
    }
    return colourFor(widget, state.testFlag(QStyle::State_MouseOver) ? "markHovered" : "mark");
}

void drawCheckBox(const QStyleOption &option, QPainter &painter, const QWidget *widget) {
    const bool on = option.state.testFlag(QStyle::State_On);
    const char *ground = option.state.testFlag(QStyle::State_Sunken) ? "accentPressed" : "accent";
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(borderOf(option, widget));
    painter.setBrush(colourFor(widget, on ? ground : "field"));
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

void drawRing(const QStyleOption &option, QPainter &painter, const QWidget *widget) {
    constexpr qreal inset = ringWidth / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colourFor(widget, "ring"), ringWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset), cornerRadius,
                            cornerRadius);
    painter.restore();
}

bool isStepper(const QWidget *widget) {
    return widget != nullptr && widget->property("stepper").toBool();
}

/// The upper or the lower half of a stepper.
QRect halfOf(const QRect &whole, bool upper) {
    const int height = whole.height() / 2;
    return upper ? QRect(whole.left(), whole.top(), whole.width(), height)
                 : QRect(whole.left(), whole.top() + height, whole.width(), whole.height() - height);
}

void drawArrow(const QRectF &half, bool upper, const QColor &colour, QPainter &painter) {
    const QPointF centre = half.center();
    const qreal tip = (upper ? -1 : 1) * arrowSize.height() / 2;
    painter.setPen(QPen(colour, arrowWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({centre + QPointF(-arrowSize.width() / 2, -tip), centre + QPointF(0, tip),
                                    centre + QPointF(arrowSize.width() / 2, -tip)}));
}

void drawStepper(const QStyleOptionSpinBox &option, QPainter &painter, const QWidget *widget) {
    const QRectF frame = QRectF(option.rect).adjusted(-1, 0.5, -0.5, -0.5); // the field has the left line
    QPainterPath outline;
    outline.moveTo(frame.topLeft());
    outline.lineTo(frame.right() - fieldRadius, frame.top());
    outline.quadTo(frame.topRight(), QPointF(frame.right(), frame.top() + fieldRadius));
    outline.lineTo(frame.right(), frame.bottom() - fieldRadius);
    outline.quadTo(frame.bottomRight(), QPointF(frame.right() - fieldRadius, frame.bottom()));
    outline.lineTo(frame.bottomLeft());
    painter.save();
    if (option.direction == Qt::RightToLeft) { // the field is on the other side
        painter.translate(2 * QRectF(option.rect).center().x(), 0);
        painter.scale(-1, 1);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline,
                     colourFor(widget, option.state.testFlag(QStyle::State_Enabled) ? "raised" : "dimmed"));
    for (const bool upper : {true, false}) {
        const QStyle::SubControl part = upper ? QStyle::SC_SpinBoxUp : QStyle::SC_SpinBoxDown;
        const QRect half = halfOf(option.rect, upper);
        const bool isActive = option.activeSubControls.testFlag(part);
        if (isActive) {
            painter.save();
            painter.setClipRect(half);
            painter.fillPath(
                outline,
                colourFor(widget, option.state.testFlag(QStyle::State_Sunken) ? "pressed" : "hovered"));
            painter.restore();
        }
        const auto step = upper ? QAbstractSpinBox::StepUpEnabled : QAbstractSpinBox::StepDownEnabled;
        const bool isEnabled =
            option.state.testFlag(QStyle::State_Enabled) && option.stepEnabled.testFlag(step);
        drawArrow(half, upper, colourFor(widget, isEnabled ? "text" : "disabled"), painter);
    }
    painter.setPen(QPen(colourFor(widget, option.state.testFlag(QStyle::State_HasFocus) ? "ring" : "border"),
                        option.state.testFlag(QStyle::State_HasFocus) ? ringWidth : 1));
    painter.drawPath(outline);
    painter.restore();
}

} // namespace

ThemeStyle::ThemeStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void ThemeStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                               const QWidget *widget) const {
    if (element == PE_IndicatorCheckBox) {
        drawCheckBox(*option, *painter, widget);
    } else if (element == PE_FrameFocusRect) {
        if (option->state.testFlag(State_KeyboardFocusChange)) {
            drawRing(*option, *painter, widget);
        }
    } else {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void ThemeStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                    QPainter *painter, const QWidget *widget) const {
    const auto *spinBox = qstyleoption_cast<const QStyleOptionSpinBox *>(option);
    if (control == CC_SpinBox && spinBox != nullptr && isStepper(widget)) {
        drawStepper(*spinBox, *painter, widget);
    } else {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

QRect ThemeStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                 const QWidget *widget) const {
    if (control == CC_SpinBox && isStepper(widget)) {
        switch (part) {
        case SC_SpinBoxUp:
            return halfOf(option->rect, true);
        case SC_SpinBoxDown:
            return halfOf(option->rect, false);
        case SC_SpinBoxEditField:
            return {};
        default:
            break;
        }
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

int ThemeStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                          QStyleHintReturn *data) const {
    if (hint == SH_EtchDisabledText || hint == SH_DialogButtonBox_ButtonsHaveIcons) {
        return 0;
    }
    return QProxyStyle::styleHint(hint, option, widget, data);
}

} // namespace quorvane
