#include "Alerts.h"

#include "frontend/support/ModalTurn.h"

#include <QApplication>
#include <QMessageBox>

namespace quorvane {

namespace {

QMessageBox *boxFor(const Alert &alert) {
    auto *box = new QMessageBox(QMessageBox::Critical, alert.title, alert.text, QMessageBox::Ok,
                                QApplication::activeModalWidget());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(alert.informative);
    box->setTextFormat(Qt::PlainText);
    box->setModal(true);
    return box;
}

} // namespace

Alerts &Alerts::shared() {
    static Alerts instance;
    return instance;
}

void Alerts::critical(const Alert &alert, const std::function<void()> &closed) {
    if (alert.overDialog) {
        show(alert, closed);
        return;
    }
    ModalTurn::shared().request([this, alert, closed](const std::function<void()> &ended) {
        show(alert, [closed, ended] {
            if (closed) {
                closed();
            }
            ended();
        });
    });
}

void Alerts::criticalLater(const Alert &alert) {
    QMetaObject::invokeMethod(
        this, [this, alert] { critical(alert); }, Qt::QueuedConnection);
}

void Alerts::criticalAndWait(const Alert &alert) {
    if (m_presenter) {
        m_presenter(alert);
    } else {
        boxFor(alert)->exec();
    }
}

void Alerts::show(const Alert &alert, const std::function<void()> &closed) {
    if (!m_presenter) {
        auto *box = boxFor(alert);
        if (closed) {
            connect(box, &QDialog::finished, this, closed);
        }
        box->show();
        return;
    }
    m_presenter(alert);
    if (closed) {
        closed();
    }
}

} // namespace quorvane
