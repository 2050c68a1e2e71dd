#include "Alerts.h"

#include "WindowOrder.h"
#include "frontend/support/ModalTurn.h"

#include <QEventLoop>
#include <QMessageBox>
#include <QPushButton>

namespace quorvane {

namespace {

QMessageBox *boxFor(const Alert &alert) {
    auto *box = new QMessageBox(QMessageBox::Critical, alert.title, alert.text, QMessageBox::Ok);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(alert.informative);
    box->setTextFormat(Qt::PlainText);
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

void Alerts::ask(const Question &question, const std::function<void(Answer)> &answered) {
    ModalTurn::shared().request([this, question, answered](const std::function<void()> &ended) {
        auto *box =
            new QMessageBox(QMessageBox::Question, question.title, question.text, QMessageBox::NoButton);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->setInformativeText(question.informative);
        box->setTextFormat(Qt::PlainText);
        const auto *first = box->addButton(question.first, QMessageBox::AcceptRole);
        const auto *second = box->addButton(question.second, QMessageBox::ActionRole);
        auto *none = box->addButton(QMessageBox::Close);
        box->setEscapeButton(none);
        connect(box, &QDialog::finished, this, [box, first, second, answered, ended] {
            const auto *pressed = box->clickedButton();
            answered(pressed == first ? Answer::First : pressed == second ? Answer::Second : Answer::None);
            ended();
        });
        showModally(*box);
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
        QMessageBox *box = boxFor(alert);
        QEventLoop loop;
        connect(box, &QDialog::finished, &loop, &QEventLoop::quit);
        showModally(*box);
        setFloating(*box, true); // the other copy's About window floats
        loop.exec();
    }
}

void Alerts::show(const Alert &alert, const std::function<void()> &closed) {
    if (!m_presenter) {
        auto *box = boxFor(alert);
        if (closed) {
            connect(box, &QDialog::finished, this, closed);
        }
        showModally(*box);
        return;
    }
    m_presenter(alert);
    if (closed) {
        closed();
    }
}

} // namespace quorvane
