#pragma once

#include "frontend/support/AlertPresenter.h"

#include <utility>

namespace quorvane {

/// Passes alerts on to another presenter, and reports the text of each. Main thread.
class AlertWatch final : public AlertPresenter {
public:
    using Observer = std::function<void(const QString &text)>;

    /// The presenter is not owned and must outlive this.
    explicit AlertWatch(AlertPresenter &presenter) : m_presenter(presenter) {}

    void setObserver(Observer observer) { m_observer = std::move(observer); }

    using AlertPresenter::critical;

    void critical(const Alert &alert, const std::function<void()> &closed) override {
        report(alert);
        m_presenter.critical(alert, closed);
    }

    void criticalLater(const Alert &alert) override {
        report(alert);
        m_presenter.criticalLater(alert);
    }

    void ask(const Question &question, const std::function<void(Answer)> &answered) override {
        m_presenter.ask(question, answered);
    }

private:
    void report(const Alert &alert) const {
        if (m_observer) {
            m_observer(alert.text);
        }
    }

    AlertPresenter &m_presenter;
    Observer m_observer;
};

} // namespace quorvane
