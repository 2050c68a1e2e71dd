#include "Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <memory>

namespace quorvane {

namespace {

bool needsNoCatalogue(const QString &language) {
    const QLocale::Language known = QLocale(language).language();
    return known == QLocale::English || known == QLocale::C;
}

bool installCatalogue(QCoreApplication &application, const QString &name, const QString &folder) {
    auto catalogue = std::make_unique<QTranslator>(&application);
    return catalogue->load(name, folder) && QCoreApplication::installTranslator(catalogue.release());
}

} // namespace

QStringList Translations::ofUser() {
    const QLocale system = QLocale::system();
    return system.language() == QLocale::C ? QStringList() : system.uiLanguages();
}

QString Translations::install(QCoreApplication &application, const QStringList &languages,
                              const QString &folder) {
    for (const QString &language : languages) {
        if (needsNoCatalogue(language)) {
            return {};
        }
        QString suffix = u'_' + language;
        suffix.replace(u'-', u'_'); // with this form Qt also searches for the language without its country
        if (installCatalogue(application, QStringLiteral("quorvane") + suffix, folder)) {
            installCatalogue(application, QStringLiteral("qtbase") + suffix,
                             QLibraryInfo::path(QLibraryInfo::TranslationsPath));
            return language;
        }
    }
    return {};
}

} // namespace quorvane
