#pragma once

#include "frontend/support/AlertPresenter.h"

#include <QObject>
#include <functional>

namespace quorvane {

/// Shows every alert and question of the program. Main thread. None opens while another one or a dialog is
/// open, except over its own dialog.
class Alerts final : public QObject, public AlertPresenter {
    Q_OBJECT

public:
    /// For tests: called instead of showing the alert's window.
    using Presenter = std::function<void(const Alert &)>;

    [[nodiscard]] static Alerts &shared();

    using AlertPresenter::critical;
    void critical(const Alert &alert, const std::function<void()> &closed) override;
    void criticalLater(const Alert &alert) override;
    /// Shows the alert and returns when it was dismissed. Only before the program's own event loop runs.
    void criticalAndWait(const Alert &alert);

    void ask(const Question &question, const std::function<void(Answer)> &answered) override;

    void setPresenter(Presenter presenter) { m_presenter = std::move(presenter); }

private:
    Alerts() = default;
    void show(const Alert &alert, const std::function<void()> &closed);

    Presenter m_presenter;
};

} // namespace quorvane
