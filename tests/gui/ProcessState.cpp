#include "tests/gui/ProcessState.h"

#include <QApplication>
#include <QEvent>
#include <QProcessEnvironment>
#include <QStyle>
#include <QTranslator>
#include <QWidget>

namespace quorvane {

namespace {

QStringList namesOfWindows() {
    QStringList names;
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        names.append(QString::fromLatin1(window->metaObject()->className()) + u' ' + window->objectName());
    }
    names.sort();
    return names;
}

QByteArray environment() {
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.remove(QStringLiteral("QT_QTESTLIB_RUNNING")); // set by the first class
    QStringList lines = variables.toStringList();
    lines.sort();
    return lines.join(u'\n').toUtf8();
}

} // namespace

ProcessState::ProcessState() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_styleName = QApplication::style()->name();
    m_styleSheet = qApp->styleSheet();
    m_palette = QGuiApplication::palette();
    m_translators = qApp->findChildren<QTranslator *>().size();
    m_windows = namesOfWindows();
    m_environment = environment();
    m_quitsWithTheLastWindow = QGuiApplication::quitOnLastWindowClosed();
    m_isPointerReplaced = QGuiApplication::overrideCursor() != nullptr;
    m_buttons = QGuiApplication::mouseButtons();
}

QStringList ProcessState::changesSince(const ProcessState &before) const {
    QStringList changes;
    const auto compare = [&changes](bool isSame, const QString &part) {
        if (!isSame) {
            changes.append(part);
        }
    };
    compare(m_styleName == before.m_styleName, QStringLiteral("the style is %1").arg(m_styleName));
    compare(m_styleSheet == before.m_styleSheet, QStringLiteral("the style sheet is another"));
    compare(m_palette == before.m_palette, QStringLiteral("the palette is another"));
    compare(m_locale == before.m_locale, QStringLiteral("the locale is %1").arg(m_locale.name()));
    compare(m_translators == before.m_translators,
            QStringLiteral("there are %1 translators").arg(m_translators));
    compare(m_windows == before.m_windows,
            QStringLiteral("there are other windows: ") + m_windows.join(QStringLiteral(", ")));
    compare(m_environment == before.m_environment, QStringLiteral("the environment is another"));
    compare(m_quitsWithTheLastWindow == before.m_quitsWithTheLastWindow,
            QStringLiteral("the last window's effect is another"));
    compare(m_isPointerReplaced == before.m_isPointerReplaced, QStringLiteral("the pointer is another"));
    compare(m_buttons == before.m_buttons, QStringLiteral("the pressed mouse buttons are others"));
    return changes;
}

} // namespace quorvane
