#pragma once

#include <QLocale>
#include <QPalette>
#include <QString>
#include <QStringList>

namespace quorvane {

/// What the classes of a test program share. A class that changes it restores it, because the next class
/// runs in the same process. Main thread, with an application.
class ProcessState {
public:
    /// Deletes what is due to be deleted, and records the state.
    ProcessState();

    /// One sentence for each part that differs from the recorded state.
    [[nodiscard]] QStringList changesSince(const ProcessState &before) const;

private:
    QString m_styleName;
    QString m_styleSheet;
    QPalette m_palette;
    QLocale m_locale;
    qsizetype m_translators;
    QStringList m_windows;
    QByteArray m_environment;
    bool m_quitsWithTheLastWindow;
    bool m_isPointerReplaced;
    Qt::MouseButtons m_buttons;
};

} // namespace quorvane
