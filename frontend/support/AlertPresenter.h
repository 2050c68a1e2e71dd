#pragma once

#include <QString>
#include <functional>

namespace quorvane {

struct Alert {
    QString title;
    QString text;
    QString informative;
    /// Shown over the open dialog, whose own message it is, and not after it.
    bool overDialog = false;
};

/// A question with two buttons.
struct Question {
    QString title;
    QString text;
    QString informative;
    QString first;
    QString second;
};

enum class Answer {
    First,
    Second,
    None ///< the question was closed
};

/// Shows critical alerts with one "OK" button, and questions. Main thread. For code of the lower layers,
/// which does not depend on the windows.
class AlertPresenter {
public:
    virtual ~AlertPresenter() = default;
    /// Shows the alert, or lets it wait for the modal window that is open, and returns. `closed`, which may
    /// be empty, is called when the alert was dismissed.
    virtual void critical(const Alert &alert, const std::function<void()> &closed) = 0;

    void critical(const Alert &alert) { critical(alert, {}); }

    /// Shows the alert after the running handler has returned and after all alerts requested before.
    virtual void criticalLater(const Alert &alert) = 0;
    /// Shows the question, or lets it wait for the modal window that is open, and returns. `answered` is
    /// called once.
    virtual void ask(const Question &question, const std::function<void(Answer)> &answered) = 0;
};

} // namespace quorvane
