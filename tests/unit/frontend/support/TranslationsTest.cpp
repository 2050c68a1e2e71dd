#include "frontend/support/Translations.h"

#include "tests/unit/Printing.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>
#include <QTemporaryDir>
#include <QTranslator>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

class TranslationsTest : public testing::Test {
protected:
    ~TranslationsTest() override {
        for (QTranslator *catalogue : qApp->findChildren<QTranslator *>()) {
            delete catalogue;
        }
    }

    void writeCatalogue(const QString &language, const QByteArray &bytes) {
        QFile file(m_folder.filePath(QStringLiteral("quorvane_") + language + QStringLiteral(".qm")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    static QByteArray germanCatalogue() {
        QFile file(QStringLiteral(QUORVANE_TRANSLATIONS "/quorvane_de.qm"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString install(const QStringList &languages) {
        return Translations::install(*qApp, languages, m_folder.path());
    }

    static QString settings() { return QCoreApplication::translate("quorvane::MainWindow", "Settings"); }

    QTemporaryDir m_folder;
    const QString m_english = QStringLiteral("Settings");
    const QString m_german = QStringLiteral("Einstellungen");
};

TEST_F(TranslationsTest, LanguageIsFoundWithAndWithoutItsCountry) {
    writeCatalogue(QStringLiteral("de"), germanCatalogue());
    for (const QString &language :
         {QStringLiteral("de"), QStringLiteral("de-AT"), QStringLiteral("de-Latn-DE")}) {
        EXPECT_EQ(install({language}), language);
        EXPECT_EQ(settings(), m_german);
        for (QTranslator *catalogue : qApp->findChildren<QTranslator *>()) {
            delete catalogue;
        }
        EXPECT_EQ(settings(), m_english);
    }
}

TEST_F(TranslationsTest, LanguagesOfACountryAreFoundByTheLocaleOnly) {
    writeCatalogue(QStringLiteral("zh_CN"), germanCatalogue());
    writeCatalogue(QStringLiteral("pt_BR"), germanCatalogue());
    EXPECT_EQ(install(QLocale(QStringLiteral("zh_CN")).uiLanguages()), QStringLiteral("zh-CN"));
    EXPECT_EQ(install(QLocale(QStringLiteral("pt_BR")).uiLanguages()), QStringLiteral("pt-BR"));
    EXPECT_TRUE(install(QLocale(QStringLiteral("zh_TW")).uiLanguages()).isNull());
    EXPECT_TRUE(install(QLocale(QStringLiteral("pt_PT")).uiLanguages()).isNull());
}

TEST_F(TranslationsTest, ShownLocaleIsThatOfTheCatalogue) {
    EXPECT_EQ(Translations::shown(), QLocale::c());
    writeCatalogue(QStringLiteral("ar"), germanCatalogue());
    install({QStringLiteral("ar-EG")});
    EXPECT_EQ(Translations::shown(), QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(Translations::shown().textDirection(), Qt::RightToLeft);
    qDeleteAll(qApp->findChildren<QTranslator *>());
    EXPECT_EQ(Translations::shown(), QLocale::c());
}

TEST_F(TranslationsTest, QtsOwnTextsAreTranslatedToo) {
    writeCatalogue(QStringLiteral("de"), germanCatalogue());
    install({QStringLiteral("de")});
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), QStringLiteral("Abbrechen"));
}

TEST_F(TranslationsTest, FirstLanguageWithACatalogueWins) {
    writeCatalogue(QStringLiteral("de"), germanCatalogue());
    EXPECT_EQ(install({QStringLiteral("fr-FR"), QStringLiteral("fr"), QStringLiteral("de")}),
              QStringLiteral("de"));
    EXPECT_EQ(settings(), m_german);
}

TEST_F(TranslationsTest, EnglishNeedsNoFile) {
    writeCatalogue(QStringLiteral("de"), germanCatalogue());
    for (const QString &language : {QStringLiteral("en"), QStringLiteral("en-GB"), QStringLiteral("C")}) {
        // A search for a file would find this one.
        writeCatalogue(QString(language).replace(u'-', u'_'), germanCatalogue());
        EXPECT_TRUE(install({language, QStringLiteral("de")}).isNull());
        EXPECT_EQ(settings(), m_english) << language.toStdString();
    }
    EXPECT_TRUE(install({}).isNull());
    EXPECT_TRUE(qApp->findChildren<QTranslator *>().isEmpty());
}

TEST_F(TranslationsTest, MissingOrBrokenCatalogueLeavesEnglish) {
    const QByteArray whole = germanCatalogue();
    ASSERT_GT(whole.size(), 1000);
    EXPECT_TRUE(install({QStringLiteral("de")}).isNull());
    for (const QByteArray &bytes : {QByteArray(), QByteArray("no catalogue"), whole.left(15), whole.left(500),
                                    whole.left(whole.size() / 2), QByteArray(4096, '\0')}) {
        writeCatalogue(QStringLiteral("de"), bytes);
        EXPECT_TRUE(install({QStringLiteral("de")}).isNull()) << bytes.size();
        EXPECT_EQ(settings(), m_english) << bytes.size();
    }
    EXPECT_TRUE(qApp->findChildren<QTranslator *>().isEmpty());
    EXPECT_TRUE(Translations::install(*qApp, {QStringLiteral("de")}, m_folder.filePath(QStringLiteral("no")))
                    .isNull());
}

} // namespace

} // namespace quorvane
