#include "Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QPointer>
#include <QTranslator>
#include <memory>

namespace quorvane {

namespace {

bool needsNoCatalogue(const QString &language) {
    const QLocale::Language known = QLocale(language).language();
    return known == QLocale::English || known == QLocale::C;
}

/// Returns the catalogue, which the application owns; null if there is none that can be used.
QTranslator *installCatalogue(QCoreApplication &application, const QString &name, const QString &folder) {
    auto catalogue = std::make_unique<QTranslator>(&application);
    const bool isInstalled =
        catalogue->load(name, folder) && QCoreApplication::installTranslator(catalogue.get());
    return isInstalled ? catalogue.release() : nullptr;
}

/// The catalogue of our own texts and its language.
struct Shown {
    QPointer<QTranslator> catalogue;
    QString language;
};

Shown &shownCatalogue() {
    static Shown shown;
    return shown;
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
        QTranslator *catalogue = installCatalogue(application, QStringLiteral("quorvane") + suffix, folder);
        if (catalogue != nullptr) {
            shownCatalogue() = {catalogue, language};
            installCatalogue(application, QStringLiteral("qtbase") + suffix,
                             QLibraryInfo::path(QLibraryInfo::TranslationsPath));
            return language;
        }
    }
    return {};
}

QLocale Translations::shown() {
    const Shown &shown = shownCatalogue();
    return shown.catalogue ? QLocale(shown.language) : QLocale::c();
}

} // namespace quorvane
