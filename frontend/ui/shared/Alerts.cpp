#include "Alerts.h"

#include <QApplication>
#include <QMessageBox>

namespace quorvane {

Alerts &Alerts::shared() {
    static Alerts instance;
    return instance;
}

void Alerts::critical(const Alert &alert) {
    if (m_open) {
        m_waiting.enqueue(alert);
        return;
    }
    show(alert);
    showWaiting();
}

void Alerts::criticalLater(const Alert &alert) {
    m_waiting.enqueue(alert);
    QMetaObject::invokeMethod(this, &Alerts::showWaiting, Qt::QueuedConnection);
}

void Alerts::showWaiting() {
    while (!m_open && !m_waiting.isEmpty()) {
        show(m_waiting.dequeue());
    }
}

void Alerts::show(const Alert &alert) {
    m_open = true;
    if (m_presenter) {
        m_presenter(alert);
    } else {
        QMessageBox box(QMessageBox::Critical, alert.title, alert.text, QMessageBox::Ok,
                        QApplication::activeModalWidget());
        box.setInformativeText(alert.informative);
        box.setTextFormat(Qt::PlainText);
        box.exec();
    }
    m_open = false;
}

} // namespace quorvane
