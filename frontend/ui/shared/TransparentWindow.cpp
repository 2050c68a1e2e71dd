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
    side = newSide;
    setFixedSize(side, side);
    if (!imageName.isNull()) {
        background = Images::pixmap(imageName, QSize(side, side), devicePixelRatioF());
    }
    update();
}

void TransparentWindow::setWindowImage(const QString &name) {
    if (!Images::exists(name)) {
        return;
    }
    imageName = name;
    background = Images::pixmap(name, QSize(side, side), devicePixelRatioF());
    update();
}

void TransparentWindow::paintEvent(QPaintEvent *event) {
    if (!background.isNull()) {
        QPainter(this).drawTiledPixmap(rect(), background);
    }
    QWidget::paintEvent(event);
}

void TransparentWindow::mousePressEvent(QMouseEvent *event) {
    grip = event->globalPosition().toPoint() - pos();
}

void TransparentWindow::mouseMoveEvent(QMouseEvent *event) {
    if (event->buttons().testFlag(Qt::LeftButton)) {
        move(event->globalPosition().toPoint() - grip);
    }
}

} // namespace quorvane
