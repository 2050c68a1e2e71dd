#pragma once

#include "frontend/support/AlertPresenter.h"

#include <QObject>
#include <QQueue>
#include <functional>

namespace quorvane {

/// Every alert of the program goes through here. Main thread. Alerts have one "OK" button; no two are
/// open at once.
class Alerts final : public QObject, public AlertPresenter {
    Q_OBJECT

public:
    /// Stands in for the window, for tests: called in place of showing the alert.
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
