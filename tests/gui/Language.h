#pragma once

#include "frontend/support/Translations.h"
#include "tests/gui/GuiTest.h"

namespace quorvane {

/// Whether the test program runs for a German user.
inline bool isGerman() {
    return qEnvironmentVariable("LC_ALL").startsWith(text("de"));
}

/// Has the windows made from now on speak the locale's language, as the program's start does.
inline void installLanguage() {
    const QString language =
        Translations::install(*qApp, Translations::ofUser(), text(QUORVANE_TRANSLATIONS));
    QCOMPARE(language.isNull(), !isGerman());
}

} // namespace quorvane
