#include "TransparentWindow.h"

#include "Images.h"

#include <QMouseEvent>
#include <QPainter>

namespace quorvane {

namespace {

constexpr int firstSize = 500;

} // namespace

TransparentWindow::TransparentWindow(Qt::WindowFlags /*style*/, QWidget *parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint) {
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowSize(firstSize);
}

void TransparentWindow::setWindowSize(int newSide) {
    m_side = newSide;
    setFixedSize(m_side, m_side);
    if (!m_imageName.isNull()) {
        m_background = scaledImage();
    }
    update();
}

void TransparentWindow::setWindowImage(const QString &name) {
    if (!Images::exists(name)) {
        return;
    }
    m_imageName = name;
    m_background = scaledImage();
    update();
}

QPixmap TransparentWindow::scaledImage() const {
    const QSize side(m_side, m_side);
    const qreal ratio = devicePixelRatioF();
    // The named image keeps its shape and is never larger than its file.
    QPixmap scaled = Images::pixmap(m_imageName, side, ratio)
                         .scaled(side * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
    return scaled;
}

void TransparentWindow::paintEvent(QPaintEvent *event) {
    if (!m_background.isNull()) {
        QPainter(this).drawTiledPixmap(rect(), m_background);
    }
    QWidget::paintEvent(event);
}

void TransparentWindow::mousePressEvent(QMouseEvent *event) {
    m_grip = event->globalPosition().toPoint() - pos();
}

void TransparentWindow::mouseMoveEvent(QMouseEvent *event) {
    if (event->buttons().testFlag(Qt::LeftButton)) {
        move(event->globalPosition().toPoint() - m_grip);
    }
}

} // namespace quorvane
