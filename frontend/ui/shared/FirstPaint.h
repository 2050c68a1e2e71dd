#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace quorvane {

/// Calls a function once, from the event loop, after the next painting of a widget; never if the widget is
/// not painted. Owned by the widget, and deleted after the call. Main thread.
class FirstPaint final : public QObject {
    Q_OBJECT

public:
    /// Objects that the function uses must live as long as the widget.
    static void callAfter(QWidget &widget, std::function<void()> call);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    FirstPaint(QWidget &widget, std::function<void()> call);

    std::function<void()> m_call;
};

} // namespace quorvane
