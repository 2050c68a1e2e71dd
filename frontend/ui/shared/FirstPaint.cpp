#include "FirstPaint.h"

#include <QEvent>
#include <QWidget>
#include <utility>

namespace quorvane {

FirstPaint::FirstPaint(QWidget &widget, std::function<void()> wanted)
    : QObject(&widget), m_call(std::move(wanted)) {
    widget.installEventFilter(this);
}

void FirstPaint::callAfter(QWidget &widget, std::function<void()> call) {
    new FirstPaint(widget, std::move(call)); // owned by the widget
}

bool FirstPaint::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_call();
                deleteLater();
            },
            Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quorvane
