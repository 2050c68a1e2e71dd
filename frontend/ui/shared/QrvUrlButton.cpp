#include "QrvUrlButton.h"

namespace quorvane {

QrvUrlButton::QrvUrlButton(QWidget *parent) : QPushButton(parent) {
    setFlat(true);
    setCursor(Qt::PointingHandCursor);
}

} // namespace quorvane
