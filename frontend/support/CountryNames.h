#pragma once

#include <QLocale>
#include <QString>

namespace quorvane {

/// The names of countries in the language of the texts that are shown. The service sends English names, which
/// also identify a location; these here are for the eye only. Main thread.
namespace CountryNames {

/// The name of the country with this code of two letters, of either case; empty if there is none. English
/// for the C locale.
[[nodiscard]] QString ofCode(const QString &code, const QLocale &shown);

/// The title of a location, with the English name of its country at its beginning replaced. Any other title,
/// and every title when English is shown, is returned as it is.
[[nodiscard]] QString inTitle(const QString &title, const QString &code, const QLocale &shown);

} // namespace CountryNames

} // namespace quorvane
