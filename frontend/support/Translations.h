#pragma once

#include <QLocale>
#include <QStringList>

class QCoreApplication;

namespace quorvane {

/// The program's texts in the user's language. The texts in the source are English; a catalogue translates
/// them.
namespace Translations {

/// The user's languages, the preferred one first. Empty in the C locale, whatever else is set.
[[nodiscard]] QStringList ofUser();

/// Installs the catalogue ("quorvane_de.qm") of the first language for which the folder contains one, and the
/// catalogue for Qt's own texts. Returns that language; null when the texts stay English, because English
/// comes before every language with a catalogue. A missing or broken catalogue is skipped. Opens no file when
/// English comes first. Main thread, before any window is created.
QString install(QCoreApplication &application, const QStringList &languages, const QString &folder);

/// The locale of the texts that are shown: of the installed catalogue, else the C locale, which is English.
/// Main thread.
[[nodiscard]] QLocale shown();

} // namespace Translations

} // namespace quorvane
