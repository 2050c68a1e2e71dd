#include "frontend/support/CountryNames.h"

#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

QString inTitle(const char *language, const char *title, const char *code) {
    return CountryNames::inTitle(QString::fromUtf8(title), QLatin1StringView(code),
                                 QLocale(QLatin1StringView(language)));
}

TEST(CountryNamesTest, NameOfTheTitlesCountryIsTranslatedAndTheCityStays) {
    EXPECT_EQ(inTitle("fr", "Germany Berlin", "DE"), QStringLiteral("Allemagne Berlin"));
    EXPECT_EQ(inTitle("pt-BR", "Brazil Sao Paulo", "BR"), QStringLiteral("Brasil Sao Paulo"));
    EXPECT_EQ(inTitle("zh-CN", "United States New York", "US"), QStringLiteral("美国 New York"));
    EXPECT_EQ(inTitle("ja", "Japan", "jp"), QStringLiteral("日本"));
    EXPECT_EQ(inTitle("de", "Bosnia and Herzegovina Sarajevo", "BA"),
              QStringLiteral("Bosnien und Herzegowina Sarajevo"));
}

TEST(CountryNamesTest, AnotherTitleStaysAsItWasSent) {
    EXPECT_EQ(inTitle("fr", "USA New York", "US"), QStringLiteral("USA New York"));
    EXPECT_EQ(inTitle("fr", "Germany Berlin", "AT"), QStringLiteral("Germany Berlin"));
    EXPECT_EQ(inTitle("fr", "Berlin Germany", "DE"), QStringLiteral("Berlin Germany"));
    EXPECT_EQ(inTitle("fr", "Nigeria Lagos", "NE"), QStringLiteral("Nigeria Lagos")); // NE is Niger
    EXPECT_EQ(inTitle("fr", "germany Berlin", "DE"), QStringLiteral("germany Berlin"));
    EXPECT_EQ(inTitle("fr", "", "DE"), QString());
}

TEST(CountryNamesTest, CodesThatNameNoCountryChangeNothing) {
    for (const char *code : {"", "x", "QQ", "xx", "D1", "DEU", "_D", "../"}) {
        EXPECT_EQ(inTitle("fr", "Germany Berlin", code), QStringLiteral("Germany Berlin")) << code;
        EXPECT_TRUE(CountryNames::ofCode(QLatin1StringView(code), QLocale(QStringLiteral("fr"))).isEmpty())
            << code;
    }
}

TEST(CountryNamesTest, EnglishStaysAsItWasSent) {
    EXPECT_EQ(CountryNames::inTitle(QStringLiteral("Turkey Ankara"), QStringLiteral("TR"), QLocale::c()),
              QStringLiteral("Turkey Ankara"));
    EXPECT_EQ(CountryNames::ofCode(QStringLiteral("de"), QLocale::c()), QStringLiteral("Germany"));
}

} // namespace

} // namespace quorvane
