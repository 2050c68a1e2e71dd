#include "QrvUrlButton.h"

namespace quorvane {

QrvUrlButton::QrvUrlButton(QWidget *parent) : QPushButton(parent) {
    setFlat(true);
    setCursor(Qt::PointingHandCursor);
    setStyleSheet(
        QStringLiteral("QPushButton { color: #5aa9e6; background: transparent; border: 1px solid "
                       "transparent; padding: 2px 4px; "
                       "text-decoration: underline; } QPushButton:focus { border-color: #7fbcec; }"));
}

} // namespace quorvane
