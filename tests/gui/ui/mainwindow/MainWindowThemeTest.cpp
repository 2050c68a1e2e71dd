#include "frontend/ui/shared/Theme.h"

#include "tests/gui/MainWindowFixture.h"

#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QStyle>

namespace quorvane {

namespace {

/// How light the lightest pixel is, from 0 to 255.
int lightestOf(const QImage &picture) {
    int lightest = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            lightest = std::max(lightest, qGray(picture.pixel(x, y)));
        }
    }
    return lightest;
}

int lightestOfTitle(QPushButton &button) {
    return lightestOf(button.grab(button.rect().adjusted(3, 3, -3, -3)).toImage());
}

} // namespace

/// The main window in the colours that the program sets at its start.
class MainWindowThemeTest : public QObject {
    Q_OBJECT

private:
    QString m_styleBefore;

private Q_SLOTS:

    void initTestCase() {
        m_styleBefore = QApplication::style()->name();
        const GuiFixture services;
        Theme::apply(*qApp);
    }

    void cleanupTestCase() {
        qApp->setStyleSheet({});
        QApplication::setStyle(m_styleBefore);
        QApplication::setPalette({});
    }

    void titlesOfTheHideAndTheSettingsButtonAreWhite() {
        MainWindowFixture fixture;
        fixture.display.answerHandled();
        fixture.show();
        for (const char *name : {"buttonQuorvane", "advancedSettingsButton"}) {
            auto *button = fixture.find<QPushButton>(name);
            QFont font = button->font();
            font.setPixelSize(28); // strokes that are wider than a pixel, so that one shows the exact colour
            button->setFont(font);
            button->resize(300, 60);
            QCOMPARE(lightestOfTitle(*button), 255);
            button->setEnabled(false);
            QVERIFY2(lightestOfTitle(*button) < 255, name);
        }
    }

    void disabledItemOfAMenuHasNoLightShadow() {
        QMenu menu;
        menu.addAction(QStringLiteral("Refresh Locations"))->setEnabled(false);
        menu.resize(menu.sizeHint());
        const QColor text = menu.palette().color(QPalette::Disabled, QPalette::WindowText);
        const QImage picture = menu.grab(menu.rect().adjusted(3, 3, -3, -3)).toImage();
        QVERIFY2(lightestOf(picture) <= qGray(text.rgb()), qPrintable(QString::number(lightestOf(picture))));
        QVERIFY(lightestOf(picture) > qGray(menu.palette().color(QPalette::Window).rgb()));
    }
};

} // namespace quorvane

GUI_TEST(MainWindowThemeTest)
#include "MainWindowThemeTest.moc"
