#pragma once

#include <QProxyStyle>

namespace quorvane {

/// Fusion with our check boxes, focus rings and steppers (a spin box with the property "stepper" shows two
/// buttons joined to the field on its left), and without the light shadow under disabled texts, which on our
/// dark menus looks like a second text, and without the icons of the desktop's theme on dialog buttons, which
/// do not fit to our colours. The style sheet leaves the boxes' indicator to this style: a picture in a style
/// sheet would make Qt look through its picture plug-ins at the start.
class ThemeStyle final : public QProxyStyle {
    Q_OBJECT

public:
    ThemeStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                       SubControl part, const QWidget *widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                                QStyleHintReturn *data) const override;
};

} // namespace quorvane
