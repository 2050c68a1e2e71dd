#pragma once

#include <QObject>

namespace quorvane {

/// F1 without modifiers opens the guide, in every window of the program. A global hot key with F1 alone does
/// not reach a window. Main thread.
class HelpKey final : public QObject {
    Q_OBJECT

public:
    explicit HelpKey(QObject &application);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace quorvane
