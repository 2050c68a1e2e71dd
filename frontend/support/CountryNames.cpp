#include "CountryNames.h"

#include <QHash>
#include <algorithm>
#include <array>
#include <unicode/uloc.h>

namespace quorvane {

namespace {

bool isCode(const QString &code) {
    return code.size() == 2 && std::all_of(code.begin(), code.end(), [](QChar c) {
               return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
           });
}

QString nameIn(const QByteArray &language, const QString &code) {
    constexpr int longestName = 256;
    const QByteArray country = '_' + code.toLatin1();
    std::array<UChar, longestName> name{};
    UErrorCode status = U_ZERO_ERROR;
    const int length =
        uloc_getDisplayCountry(country.constData(), language.constData(), name.data(), longestName, &status);
    // Without a name the code itself is returned, with a warning.
    const bool isNamed =
        U_SUCCESS(status) && status != U_USING_DEFAULT_WARNING && status != U_STRING_NOT_TERMINATED_WARNING;
    return isNamed ? QString(reinterpret_cast<const QChar *>(name.data()), length) : QString();
}

/// Each list asks for the same few names again and again.
const QString &knownName(const QByteArray &language, const QString &code) {
    static QHash<std::pair<QByteArray, QString>, QString> known;
    const std::pair key(language, code);
    if (const auto found = known.constFind(key); found != known.constEnd()) {
        return *found;
    }
    return *known.insert(key, nameIn(language, code));
}

QString nameOf(const QByteArray &language, const QString &code) {
    return isCode(code) ? knownName(language, code.toUpper()) : QString();
}

} // namespace

QString CountryNames::ofCode(const QString &code, const QLocale &shown) {
    return nameOf(shown.language() == QLocale::C ? QByteArray("en") : shown.name().toLatin1(), code);
}

QString CountryNames::inTitle(const QString &title, const QString &code, const QLocale &shown) {
    if (shown.language() == QLocale::C) {
        return title;
    }
    const QString translated = ofCode(code, shown);
    QString english = nameOf("en", code);
    if (!title.startsWith(english)) {
        english.replace(QStringLiteral(" & "), QStringLiteral(" and "));
    }
    const bool isWhole = title.size() == english.size() || title.mid(english.size(), 1) == u' ';
    if (translated.isEmpty() || english.isEmpty() || !title.startsWith(english) || !isWhole) {
        return title;
    }
    return translated + title.mid(english.size());
}

} // namespace quorvane
