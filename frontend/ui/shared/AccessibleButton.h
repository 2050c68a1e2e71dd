#pragma once

#include <QAccessibleWidget>

class QAbstractButton;

namespace quorvane {

/// A button, check box or radio button as assistive programs see it. Each of its actions does what a click
/// does, and nothing while it is disabled. (Qt's own sets the state of one that can be checked, and nothing
/// is emitted that the program acts on.) Main thread.
class AccessibleButton final : public QAccessibleWidget {
public:
    explicit AccessibleButton(QAbstractButton &button);

    /// From now on every button of the program is of this kind.
    static void install();

    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QStringList actionNames() const override;
    /// Returns before the click's effects, which may open a window.
    void doAction(const QString &name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString &name) const override;

private:
    QAbstractButton &m_button;
};

} // namespace quorvane
