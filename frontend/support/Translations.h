#pragma once

#include <QStringList>

class QCoreApplication;

namespace quorvane {

/// The program's texts in the user's language. The texts in the source are English; a catalogue turns them
/// into another language.
namespace Translations {

/// The languages that the user wants, the most wanted first. None in the C locale, whatever else is set.
[[nodiscard]] QStringList ofUser();

/// Has the application translate into the first of the languages that the folder has a catalogue for
/// ("quorvane_de.qm"), and Qt's own texts with it. Returns that language; null when the texts stay English,
/// because English is wanted more than any language with a catalogue. A missing or broken catalogue is passed
/// over. Opens no file when English comes first. Main thread, before any window is made.
QString install(QCoreApplication &application, const QStringList &languages, const QString &folder);

} // namespace Translations

} // namespace quorvane
