#pragma once

#include <QString>

namespace quorvane {

struct Alert {
    QString title;
    QString text;
    QString informative;
};

/// Shows critical alerts with one "OK" button. Main thread. For code of the lower layers, which does not
/// depend on the windows.
class AlertPresenter {
public:
    virtual ~AlertPresenter() = default;
    /// Shows the alert and returns when it is dismissed. While another alert is open, the new one is shown
    /// when that one is closed, and this call returns at once.
    virtual void critical(const Alert &alert) = 0;
    /// Shows the alert after the running handler has returned and after all alerts requested before.
    virtual void criticalLater(const Alert &alert) = 0;
};

} // namespace quorvane
