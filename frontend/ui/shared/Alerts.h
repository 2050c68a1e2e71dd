#pragma once

#include "frontend/support/AlertPresenter.h"

#include <QObject>
#include <QQueue>
#include <functional>

namespace quorvane {

/// Shows every alert of the program. Main thread. Alerts have one "OK" button; no two are open at once.
class Alerts final : public QObject, public AlertPresenter {
    Q_OBJECT

public:
    /// For tests: called instead of showing the alert's window.
    using Presenter = std::function<void(const Alert &)>;

    [[nodiscard]] static Alerts &shared();

    void critical(const Alert &alert) override;
    void criticalLater(const Alert &alert) override;

    void setPresenter(Presenter presenter) { m_presenter = std::move(presenter); }

private:
    Alerts() = default;
    void show(const Alert &alert);
    void showWaiting();

    Presenter m_presenter;
    QQueue<Alert> m_waiting;
    bool m_open = false;
};

} // namespace quorvane
