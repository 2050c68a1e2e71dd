#pragma once

#include "frontend/support/Translations.h"
#include "tests/gui/GuiTest.h"

#include <QGuiApplication>
#include <QTranslator>

namespace quorvane {

/// Whether the test program runs for a German user.
inline bool isGerman() {
    return qEnvironmentVariable("LC_ALL").startsWith(text("de"));
}

/// Translates the windows that are created from now on into the locale's language, as the program's start
/// does.
inline void installLanguage() {
    const QString language =
        Translations::install(*qApp, Translations::ofUser(), text(QUORVANE_TRANSLATIONS));
    QCOMPARE(language.isNull(), !isGerman());
    QGuiApplication::setLayoutDirection(Translations::shown().textDirection());
}

/// The windows of the next test class are in English again.
inline void removeLanguage() {
    qDeleteAll(qApp->findChildren<QTranslator *>());
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

} // namespace quorvane
