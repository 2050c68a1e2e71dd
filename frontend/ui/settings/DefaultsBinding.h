#pragma once

#include "frontend/support/Preferences.h"

#include <QObject>
#include <functional>
#include <vector>

class QAbstractButton;
class QButtonGroup;
class QComboBox;

namespace quorvane {

/// Binds controls to preferences: a change of a bound control by the user becomes an edit of the shared
/// user-defaults controller, and refresh() shows that controller's values in all controls. Controls are not
/// owned. Main thread.
class DefaultsBinding final : public QObject {
    Q_OBJECT

public:
    explicit DefaultsBinding(QObject *parent = nullptr);

    /// The box's state as a boolean.
    void bindBoolean(QAbstractButton &box, Preference preference);
    /// The opposite of the box's state as a boolean: the box is on while nothing is stored.
    void bindInverse(QAbstractButton &box, Preference preference);
    /// The box's state as the integer 1 or 0.
    void bindInteger(QAbstractButton &box, Preference preference);
    /// The checked button's number. If no button has the stored number, all buttons are off.
    void bindTag(QButtonGroup &group, Preference preference);
    /// The chosen entry's text. A stored text that is not among the entries is added to them.
    void bindText(QComboBox &box, Preference preference);

    void refresh();

Q_SIGNALS:
    /// The user changed a bound control.
    void edited();

private:
    void edit(Preference preference, const QVariant &value);

    std::vector<std::function<void()>> m_readers;
};

} // namespace quorvane
