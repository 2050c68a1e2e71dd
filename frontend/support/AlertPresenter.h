#pragma once

#include <QString>

namespace quorvane {

struct Alert {
    QString title;
    QString text;
    QString informative;
};

/// Shows critical alerts with one "OK" button. Main thread. For code below the windows, which cannot see
/// them.
class AlertPresenter {
public:
    virtual ~AlertPresenter() = default;
    /// Shows the alert and returns when it is dismissed. While another alert is open, the alert waits for
    /// that one to close, and this returns at once.
    virtual void critical(const Alert &alert) = 0;
    /// Shows the alert after the present handler has returned and after every alert requested before.
    virtual void criticalLater(const Alert &alert) = 0;
};

} // namespace quorvane
