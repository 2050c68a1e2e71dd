#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace quorvane {

/// Calls once, from the event loop, after a widget was drawn for the first time from now on; never when it is
/// not. Belongs to the widget and goes after the call. Main thread.
class FirstPaint final : public QObject {
    Q_OBJECT

public:
    /// What the call uses must live as long as the widget.
    static void callAfter(QWidget &widget, std::function<void()> call);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    FirstPaint(QWidget &widget, std::function<void()> call);

    std::function<void()> m_call;
};

} // namespace quorvane
