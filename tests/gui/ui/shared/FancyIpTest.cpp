#include "frontend/ui/shared/BackgroundView.h"
#include "frontend/ui/shared/QrvFancyIp.h"
#include "frontend/ui/shared/TransparentWindow.h"
#include "tests/gui/GuiTest.h"

#include <QAccessible>
#include <QLabel>

namespace quorvane {

class FancyIpTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;

    [[nodiscard]] static QStringList images(const QrvFancyIp &ip) {
        QStringList names;
        for (const QLabel *view : ip.findChildren<QLabel *>()) {
            names.append(view->objectName());
        }
        return names;
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<GuiFixture>();
        for (const char *name : {"0", "1", "2", "dot"}) {
            m_fixture->addImage(text(name));
        }
    }

    void cleanup() { m_fixture.reset(); }

    void onePicturePerCharacterFromLeftToRight() {
        QrvFancyIp ip;
        ip.setStringValue(text("10.0.0.1"));
        QCOMPARE(images(ip), (QStringList{text("1"), text("0"), text("dot"), text("0"), text("dot"),
                                          text("0"), text("dot"), text("1")}));
        int x = 0;
        for (const QLabel *view : ip.findChildren<QLabel *>()) {
            QCOMPARE(view->x(), x);
            QCOMPARE(view->y(), 0);
            QCOMPARE(view->height(), ip.height());
            x += view->width();
        }
        QCOMPARE(ip.width(), x);
    }

    void shorterTextLeavesNoStrayGlyph() {
        QrvFancyIp ip;
        ip.setStringValue(text("10.0.0.1"));
        const int before = ip.width();
        ip.setStringValue(text("1.1"));
        QCOMPARE(images(ip).size(), 3);
        QVERIFY(ip.width() < before);
    }

    void everyViewIsAsWideAsItsImageAndAsHighAsTheFirstOne() {
        m_fixture->addImage(text("1"), QSize(9, 20));
        m_fixture->addImage(text("2"), QSize(13, 24));
        m_fixture->addImage(text("dot"), QSize(5, 6));
        QrvFancyIp ip;
        const auto sizes = [&ip] {
            QList<QSize> all;
            for (const QLabel *view : ip.findChildren<QLabel *>()) {
                all.append(view->size());
            }
            return all;
        };
        ip.setStringValue(text("1.2"));
        QCOMPARE(sizes(), (QList<QSize>{{9, 20}, {5, 20}, {13, 20}}));
        QCOMPARE(ip.size(), QSize(27, 20));
        QCOMPARE(ip.sizeHint(), QSize(27, 20));
        ip.setStringValue(text(".1"));
        QCOMPARE(sizes(), (QList<QSize>{{5, 6}, {9, 6}}));
        QCOMPARE(ip.size(), QSize(14, 6));
        for (const QLabel *view : ip.findChildren<QLabel *>()) {
            QVERIFY(!view->pixmap(Qt::ReturnByValue).isNull());
        }
    }

    void charactersWithoutAPictureLeaveNoGap() {
        QrvFancyIp with;
        with.setStringValue(text("1:x1\n"));
        QrvFancyIp without;
        without.setStringValue(text("11"));
        QCOMPARE(with.width(), without.width());
        QCOMPARE(images(with).size(), 5);
    }

    void aTextFarTooLongIsCutOff() {
        QrvFancyIp ip;
        ip.setStringValue(text("0000:0000:0000:0000:0000:ffff:192.168.100.228"));
        QCOMPARE(images(ip).size(), 45);
        ip.setStringValue(QString(1'000'000, u'1'));
        QVERIFY(images(ip).size() < 100);
        QCOMPARE(ip.stringValue().size(), 1'000'000);
    }

    void emptyTextKeepsTheSize() {
        QrvFancyIp ip;
        ip.setStringValue(text("10.0.0.1"));
        const QSize before = ip.size();
        ip.setStringValue(text(""));
        QVERIFY(images(ip).isEmpty());
        QCOMPARE(ip.size(), before);
    }

    void accessibleValueIsTheExactText() {
        QrvFancyIp ip;
        ip.setStringValue(text("10.0.0.1\n"));
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&ip);
        QVERIFY(accessible != nullptr);
        QCOMPARE(accessible->text(QAccessible::Name), text("10.0.0.1\n"));
        QCOMPARE(accessible->role(), QAccessible::StaticText);
    }

    void backgroundIsTheFixedGrey() {
        BackgroundView view;
        view.resize(20, 20);
        const QImage picture = view.grab().toImage();
        QCOMPARE(picture.pixelColor(0, 0), QColor(64, 64, 64));
        QCOMPARE(picture.pixelColor(19, 19), QColor(64, 64, 64));
    }

    void transparentWindowIsBorderlessWhateverStyleIsRequested() {
        const TransparentWindow window(Qt::WindowTitleHint);
        QVERIFY(window.windowFlags().testFlag(Qt::FramelessWindowHint));
        QVERIFY(window.testAttribute(Qt::WA_TranslucentBackground));
        QCOMPARE(window.windowSize(), 500);
        QCOMPARE(window.size(), QSize(500, 500));
        QVERIFY(TransparentWindow::canBecomeKeyWindow());
        QVERIFY(TransparentWindow::canBecomeMainWindow());
    }

    void transparentWindowLoadsAnImageOfItsSize() {
        TransparentWindow window;
        window.setWindowSize(100);
        QVERIFY(window.backgroundImage().isNull()); // before any image the background stays clear
        window.setWindowImage(text("no-such-image"));
        QVERIFY(window.backgroundImage().isNull());
        window.setWindowImage(text("applock"));
        QVERIFY(!window.backgroundImage().isNull());
        QCOMPARE(window.size(), QSize(100, 100));
    }

    void transparentWindowsPictureFillsIt() {
        for (const QSize own : {QSize(8, 6), QSize(300, 40)}) {
            m_fixture->addImage(text("wallpaper%1").arg(own.width()), own);
            TransparentWindow window;
            window.setWindowSize(100);
            window.setWindowImage(text("wallpaper%1").arg(own.width()));
            QCOMPARE(window.backgroundImage().deviceIndependentSize(), QSizeF(100, 100));
            window.setWindowSize(240);
            QCOMPARE(window.backgroundImage().deviceIndependentSize(), QSizeF(240, 240));
            QCOMPARE(window.size(), QSize(240, 240));
        }
    }

    void transparentWindowIsDraggedByItsBackground() {
        TransparentWindow window;
        window.show();
        window.move(100, 100);
        QTest::mousePress(&window, Qt::LeftButton, {}, QPoint(10, 10));
        const QPointF target = window.mapToGlobal(QPointF(40, 30));
        QMouseEvent move(QEvent::MouseMove, QPointF(40, 30), target, Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&window, &move);
        QTest::mouseRelease(&window, Qt::LeftButton, {}, QPoint(40, 30));
        QCOMPARE(window.pos(), QPoint(130, 120));
    }
};

} // namespace quorvane

GUI_TEST(FancyIpTest)
#include "FancyIpTest.moc"
