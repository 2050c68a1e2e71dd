#include "HelpKey.h"

#include "WebPages.h"

#include <QKeyEvent>

namespace quorvane {

HelpKey::HelpKey(QObject &application) {
    application.installEventFilter(this);
}

bool HelpKey::eventFilter(QObject *watched, QEvent *event) {
    // The window itself receives the key before the control that has the focus.
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) {
        return QObject::eventFilter(watched, event);
    }
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier || key->isAutoRepeat()) {
        return QObject::eventFilter(watched, event);
    }
    WebPages::openGuide();
    return true;
}

} // namespace quorvane
