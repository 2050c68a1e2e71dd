#pragma once

#include <QProxyStyle>

namespace quorvane {

/// Fusion with our check boxes. The style sheet leaves their indicator to this style: a picture in a style
/// sheet would make Qt look through its picture plug-ins at the start.
class ThemeStyle final : public QProxyStyle {
    Q_OBJECT

public:
    ThemeStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
};

} // namespace quorvane
