#include "frontend/ui/shared/Theme.h"

#include "frontend/ui/shared/BackgroundView.h"
#include "frontend/ui/shared/ThemeChoice.h"
#include "frontend/ui/shared/ThemeColours.h"
#include "frontend/ui/shared/ThemeScope.h"
#include "frontend/ui/shared/ThemeStyle.h"
#include "tests/gui/GuiTest.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProxyStyle>
#include <QPushButton>
#include <QRegularExpression>
#include <QStyle>
#include <QVBoxLayout>

#include <cmath>

namespace quorvane {

namespace {

/// The relative luminance of WCAG 2.1, from 0 to 1.
double luminance(const QColor &colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor &one, const QColor &other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QColor colour(const char *name, Theme::Scheme scheme) {
    return {themeColour(QLatin1StringView(name), scheme)};
}

constexpr Theme::Scheme schemes[] = {Theme::Scheme::Dark, Theme::Scheme::Light};

/// As of a desktop that wants icons on the buttons of dialogs.
class StyleWithIcons final : public QProxyStyle {
public:
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                                QStyleHintReturn *data) const override {
        const bool isForced = hint == SH_DialogButtonBox_ButtonsHaveIcons || hint == SH_UnderlineShortcut;
        return isForced ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

QColor groundOf(QWidget &widget) {
    return widget.grab().toImage().pixelColor(widget.width() / 2, 3);
}

} // namespace

class ThemeTest : public QObject {
    Q_OBJECT

private:
    QString m_styleBefore;

private Q_SLOTS:

    void initTestCase() { m_styleBefore = QApplication::style()->name(); }

    void cleanup() {
        qApp->setStyleSheet({});
        QApplication::setStyle(m_styleBefore);
        QApplication::setPalette({});
    }

    void contrastIsThatOfKnownPairs() {
        QCOMPARE(contrast(Qt::white, Qt::black), 21.0);
        QCOMPARE(contrast(Qt::black, Qt::black), 1.0);
        QVERIFY(std::abs(contrast(QColor(118, 118, 118), Qt::white) - 4.54) < 0.01);
    }

    void textsCanBeReadOnWhatTheyAreDrawnOn() {
        struct Pair {
            const char *text;
            QStringList grounds;
        };

        const std::array pairs{
            Pair{"text",
                 {text("window"), text("field"), text("list"), text("raised"), text("hovered"),
                  text("pressed"), text("bar"), text("barHovered"), text("barChecked")}},
            Pair{"quiet", {text("window")}},
            Pair{"warning", {text("window")}},
            Pair{"link", {text("window")}},
        };
        for (const Theme::Scheme scheme : schemes) {
            for (const Pair &pair : pairs) {
                for (const QString &ground : pair.grounds) {
                    const double found =
                        contrast(colour(pair.text, scheme), colour(ground.toLatin1().constData(), scheme));
                    QVERIFY2(found >= 4.5,
                             qPrintable(text("%1 on %2: %3").arg(text(pair.text), ground).arg(found)));
                }
            }
            for (const char *ground :
                 {"accent", "accentHovered", "accentPressed", "stop", "stopHovered", "stopPressed"}) {
                const double found = contrast(Qt::white, colour(ground, scheme));
                QVERIFY2(found >= 4.5, qPrintable(text("white on %1: %2").arg(text(ground)).arg(found)));
            }
            // The ring is no text, but must be seen.
            QVERIFY(contrast(colour("ring", scheme), colour("window", scheme)) >= 3.0);
        }
    }

    void stateLinesCanBeRead() {
        QVERIFY(contrast(QColor(223, 46, 51), QColor(2, 2, 2)) >= 4.5);
        QVERIFY(contrast(QColor(211, 211, 211), QColor(64, 64, 64)) >= 4.5);
    }

    void everyNameInTheSheetIsReplaced() {
        for (const Theme::Scheme scheme : schemes) {
            Theme::apply(*qApp, scheme);
            const QRegularExpressionMatch left =
                QRegularExpression(text("\\$\\w+")).match(qApp->styleSheet());
            QVERIFY2(!left.hasMatch(), qPrintable(left.captured()));
        }
    }

    void lightSchemeKeepsTheBackgroundViewAndWhatIsInItDark() {
        Theme::apply(*qApp, Theme::Scheme::Light);
        QDialog dialog;
        QLineEdit lightField(&dialog);
        dialog.resize(200, 100);
        QCOMPARE(groundOf(dialog), QColor(0xf2, 0xf2, 0xf2));
        QCOMPARE(groundOf(lightField), QColor(Qt::white));
        QWidget window;
        BackgroundView view(&window);
        QLineEdit darkField(&view);
        QLabel label(text("x"), &view);
        view.resize(200, 100);
        QCOMPARE(groundOf(view), QColor(64, 64, 64));
        QCOMPARE(groundOf(darkField), QColor(0x2e, 0x2e, 0x2e));
        QCOMPARE(label.palette().color(QPalette::WindowText), QColor(0xf5, 0xf5, 0xf5));
        QCOMPARE(ThemeScope::schemeOf(&label), Theme::Scheme::Dark);
        QCOMPARE(ThemeScope::schemeOf(&lightField), Theme::Scheme::Light);
    }

    void darkUnlessTheUserOrTheDesktopPrefersLight() {
        using platform::ColorScheme;
        const auto isLight = [] {
            return ThemeScope::schemeOf(nullptr) == Theme::Scheme::Light;
        };
        const GuiFixture fixture;
        const ThemeChoice choice(*qApp);
        QVERIFY(!isLight());
        fixture.services.appearance().set({ColorScheme::Light, false});
        QVERIFY(isLight()); // at once
        fixture.services.appearance().set({ColorScheme::Dark, false});
        QVERIFY(!isLight());
        const auto choose = [&fixture](int number) {
            fixture.services.preferences().setValue(text("appearance"), number);
            ThemeChoice::update();
        };
        choose(2);
        QVERIFY(isLight());
        fixture.services.appearance().set({ColorScheme::Light, false});
        choose(1);
        QVERIFY(!isLight());
        choose(7); // of a later version
        QVERIFY(isLight());
        fixture.services.appearance().set({ColorScheme::NoPreference, false});
        QVERIFY(!isLight());
    }

    void dialogButtonsHaveNoIconsWhateverTheDesktopWants() {
        ThemeStyle style;
        style.setBaseStyle(new StyleWithIcons); // the style owns it
        QCOMPARE(style.styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons, nullptr, nullptr, nullptr), 0);
        QCOMPARE(style.styleHint(QStyle::SH_UnderlineShortcut, nullptr, nullptr, nullptr), 1);
    }

    void schemeCanChangeWhileAWindowIsOpen() {
        Theme::apply(*qApp, Theme::Scheme::Dark);
        QDialog dialog;
        dialog.resize(200, 100);
        dialog.show();
        QCOMPARE(groundOf(dialog), QColor(0x40, 0x40, 0x40));
        Theme::apply(*qApp, Theme::Scheme::Light);
        QCOMPARE(groundOf(dialog), QColor(0xf2, 0xf2, 0xf2));
        Theme::apply(*qApp, Theme::Scheme::Dark);
        QCOMPARE(groundOf(dialog), QColor(0x40, 0x40, 0x40));
    }
};

} // namespace quorvane

GUI_TEST(ThemeTest)
#include "ThemeTest.moc"
