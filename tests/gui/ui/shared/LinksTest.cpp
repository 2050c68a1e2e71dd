#include "frontend/ui/mainwindow/QrvAboutWindowController.h"
#include "frontend/ui/shared/Alerts.h"
#include "frontend/ui/shared/HelpKey.h"
#include "frontend/ui/shared/QrvUrlButton.h"
#include "frontend/ui/shared/QrvUrlTextField.h"
#include "frontend/ui/shared/WebPages.h"
#include "tests/gui/GuiTest.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHideEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QtTest/qtestspontaneevent.h>

namespace quorvane {

class LinksTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<GuiFixture>();
        m_fixture->services.hardware().serial = text("SER");
    }

    void cleanup() { m_fixture.reset(); }

    void addressesOfThePages() {
        QCOMPARE(WebPages::root(text("ID-1")), text("https://www.quorvane.test/?utm_source=905-quorvane-mac&"
                                                    "utm_medium=in-app&uid=ID-1"));
        QCOMPARE(WebPages::ipCheck(text("ID-1")),
                 text("https://www.quorvane.test/ip?utm_source=905-quorvane-mac&"
                      "utm_medium=in-app&uid=ID-1"));
    }

    void pageThatCannotBeOpenedIsNamedInAnAlert() {
        QStringList alerts;
        Alerts::shared().setPresenter([&alerts](const Alert &alert) {
            alerts = QStringList{alert.text, alert.informative};
        });
        WebPages::open(text("https://a.test/"));
        QVERIFY(alerts.isEmpty());
        m_fixture->services.workspace().openingSucceeds = false;
        WebPages::open(text("https://b.test/"));
        Alerts::shared().setPresenter({});
        QCOMPARE(alerts,
                 (QStringList{text("No web browser could be opened."), text("The page is https://b.test/")}));
        QCOMPARE(m_fixture->services.workspace().openedUrls,
                 (QStringList{text("https://a.test/"), text("https://b.test/")}));
    }

    void helpOpensTheInstalledGuide() {
        const QString guide =
            m_fixture->services.platform().bundle->resourcesPath() + text("/help/guide.html");
        QWidget main;
        QrvAPI api;
        QrvAboutWindowController about(main, api);
        about.showWindow();
        about.findChild<QPushButton *>(text("helpButton"))->click();
        QCOMPARE(m_fixture->services.workspace().openedPages, QStringList{guide});
        const HelpKey key(*qApp);
        QTest::keyClick(about.windowHandle(), Qt::Key_F1);
        QTest::keyClick(about.findChild<QPushButton *>(text("okButton")), Qt::Key_F1);
        QCOMPARE(m_fixture->services.workspace().openedPages.size(), 3);
        QTest::keyClick(&about, Qt::Key_F1, Qt::ShiftModifier);
        QTest::keyClick(&about, Qt::Key_F2);
        QCOMPARE(m_fixture->services.workspace().openedPages.size(), 3);
        QVERIFY(about.isVisible());
    }

    void guideThatNoBrowserOpensIsNamed() {
        QString named;
        Alerts::shared().setPresenter([&named](const Alert &alert) { named = alert.informative; });
        m_fixture->services.workspace().openingSucceeds = false;
        WebPages::openGuide();
        Alerts::shared().setPresenter({});
        QVERIFY(named.startsWith(text("The page is /")) && named.endsWith(text("/help/guide.html")));
    }

    void aboutCopiesDiagnostics() {
        QWidget main;
        QrvAPI api;
        QrvAboutWindowController about(main, api);
        about.showWindow();
        auto *copy = about.findChild<QPushButton *>(text("copyButton"));
        const int width = copy->minimumWidth();
        QCOMPARE(copy->text(), text("Copy Diagnostics"));
        copy->click();
        const QString copied = QGuiApplication::clipboard()->text();
        QVERIFY2(copied.startsWith(text("Quorvane: 1.0.0\nQt: ")), qPrintable(copied));
        QVERIFY(copied.contains(text("\nSession: ")) && copied.contains(text("windows over offscreen\n")));
        QVERIFY(!copied.contains(m_fixture->services.home()));
        QCOMPARE(copy->text(), text("Diagnostics Copied"));
        QVERIFY(copy->sizeHint().width() <= width);
        about.okButtonPressed();
        about.showWindow();
        QCOMPARE(copy->text(), text("Copy Diagnostics"));
    }

    void hyperlinkCarriesItsAddressUnderlinedAndLiteral() {
        const QString link =
            QrvUrlTextField::hyperlinkFromString(text("<b>&"), text("https://a.test/?x=\"1\"&y"));
        QVERIFY(link.contains(text("&lt;b&gt;&amp;")));
        QVERIFY(link.contains(text("href=\"https://a.test/?x=&quot;1&quot;&amp;y\"")));
        QVERIFY(link.contains(text("text-decoration:underline")));
    }

    void clickOnALinkOpensIt() {
        QrvUrlTextField field;
        QCOMPARE(field.cursor().shape(), Qt::PointingHandCursor);
        QrvUrlTextField::hyperlinkWithTextField(field, text("Site"), text("https://a.test/"));
        field.show();
        QVERIFY(field.textInteractionFlags().testFlag(Qt::LinksAccessibleByKeyboard));
        QTest::mouseClick(&field, Qt::LeftButton, {}, QPoint(5, field.height() / 2));
        QCOMPARE(m_fixture->services.workspace().openedUrls, QStringList{text("https://a.test/")});
    }

    void linkButtonHasTheHandPointer() {
        const QrvUrlButton button;
        QCOMPARE(button.cursor().shape(), Qt::PointingHandCursor);
    }

    void aboutShowsVersionAndBuildDate() {
        QrvAPI api;
        QWidget main;
        const QrvAboutWindowController about(main, api);
        const QString line = about.findChild<QLabel *>(text("labelVersion"))->text();
        static const QRegularExpression form(
            text("^1\\.0\\.0 built (Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 1-3][0-9] \\d{4}$"));
        QVERIFY2(form.match(line).hasMatch(), qPrintable(line));
        QVERIFY(about.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }

    void aboutHidesAVisibleMainWindowAndBringsItBack() {
        QrvAPI api;
        QWidget main;
        QrvAboutWindowController about(main, api);
        main.show();
        about.showWindow();
        QVERIFY(!main.isVisible());
        QVERIFY(about.isVisible());
        QTest::mouseClick(about.findChild<QPushButton *>(text("okButton")), Qt::LeftButton);
        QVERIFY(!about.isVisible());
        QVERIFY(main.isVisible());
    }

    void aboutLeavesAHiddenMainWindowHidden() {
        QrvAPI api;
        QWidget main;
        QrvAboutWindowController about(main, api);
        about.showWindow();
        QTest::keyClick(&about, Qt::Key_Escape);
        QVERIFY(!about.isVisible());
        QVERIFY(!main.isVisible());
    }

    void aboutHiddenByTheDesktopIsNotClosed() {
        QrvAPI api;
        QWidget main;
        QrvAboutWindowController about(main, api);
        main.show();
        about.showWindow();
        QHideEvent minimised;
        QSpontaneKeyEvent::setSpontaneous(&minimised);
        qApp->notify(&about, &minimised);
        QVERIFY(!main.isVisible());
        about.close();
        QVERIFY(main.isVisible());
    }

    void aboutOpensTheSite() {
        QrvAPI api;
        QWidget main;
        QrvAboutWindowController about(main, api);
        QTest::mouseClick(about.findChild<QPushButton *>(text("urlButton")), Qt::LeftButton);
        QCOMPARE(m_fixture->services.workspace().openedUrls, QStringList{WebPages::root(text("SER-1.0.0"))});
    }
};

} // namespace quorvane

GUI_TEST(LinksTest)
#include "LinksTest.moc"
