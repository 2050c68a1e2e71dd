#include "Alerts.h"

#include <QApplication>
#include <QMessageBox>

namespace quorvane {

Alerts &Alerts::shared() {
    static Alerts instance;
    return instance;
}

void Alerts::critical(const Alert &alert) {
    if (open) {
        waiting.enqueue(alert);
        return;
    }
    show(alert);
    showWaiting();
}

void Alerts::criticalLater(const Alert &alert) {
    waiting.enqueue(alert);
    QMetaObject::invokeMethod(this, &Alerts::showWaiting, Qt::QueuedConnection);
}

void Alerts::showWaiting() {
    while (!open && !waiting.isEmpty()) {
        show(waiting.dequeue());
    }
}

void Alerts::show(const Alert &alert) {
    open = true;
    if (presenter) {
        presenter(alert);
    } else {
        QMessageBox box(QMessageBox::Critical, alert.title, alert.text.trimmed(), QMessageBox::Ok,
                        QApplication::activeModalWidget());
        box.setInformativeText(alert.informative);
        box.setTextFormat(Qt::PlainText);
        box.exec();
    }
    open = false;
}

} // namespace quorvane
