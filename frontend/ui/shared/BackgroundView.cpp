#include "BackgroundView.h"

#include "ThemeScope.h"

#include <QPaintEvent>
#include <QPainter>

namespace quorvane {

BackgroundView::BackgroundView(QWidget *parent) : QWidget(parent) {
    ThemeScope::keepDark(*this); // its grey is the same in both schemes
}

void BackgroundView::paintEvent(QPaintEvent *event) {
    QPainter(this).fillRect(event->rect(), QColor(64, 64, 64));
    QWidget::paintEvent(event);
}

} // namespace quorvane
