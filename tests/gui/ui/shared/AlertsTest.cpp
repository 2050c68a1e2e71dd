#include "frontend/support/ModalTurn.h"
#include "tests/gui/GuiTest.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace quorvane {

namespace {

QMessageBox *openBox() {
    return qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
}

} // namespace

class AlertsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void cleanup() {
        Alerts::shared().setPresenter({});
        ModalTurn::shared().clear();
    }

    void showsTitleTextInformativeAndOneButton() {
        bool closed = false;
        Alerts::shared().critical({text("Title"), text("<b>Text</b>\n"), text("More")},
                                  [&closed] { closed = true; });
        QMessageBox *box = openBox();
        QVERIFY(box != nullptr);
        QCOMPARE(box->windowTitle(), text("Title"));
        QCOMPARE(box->text(), text("<b>Text</b>\n")); // to the last character
        QCOMPARE(box->informativeText(), text("More"));
        QCOMPARE(box->icon(), QMessageBox::Critical);
        QCOMPARE(box->buttons().size(), 1);
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QVERIFY(!closed);
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        QVERIFY(closed);
    }

    void returnAndEscapeDismiss() {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            Alerts::shared().critical({text("t"), text("x"), {}});
            QTest::keyClick(openBox(), key);
            QVERIFY(openBox() == nullptr);
        }
    }

    void alertThatIsWaitedForReturnsWhenItIsDismissed() {
        QTimer::singleShot(0, this, [] { QTest::keyClick(openBox(), Qt::Key_Return); });
        Alerts::shared().criticalAndWait({text("t"), text("x"), {}});
        QVERIFY(openBox() == nullptr);
    }

    void laterAlertsComeAfterTheHandlerInOrder() {
        QStringList shown;
        Alerts::shared().setPresenter([&shown](const Alert &alert) { shown.append(alert.text); });
        Alerts::shared().criticalLater({text("t"), text("first"), {}});
        Alerts::shared().criticalLater({text("t"), text("second"), {}});
        QVERIFY(shown.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(shown, (QStringList{text("first"), text("second")}));
    }

    void noTwoAreOpenAtOnce() {
        Alerts::shared().critical({text("t"), text("first"), {}});
        Alerts::shared().criticalLater({text("t"), text("third"), {}});
        Alerts::shared().critical({text("t"), text("second"), {}});
        QCoreApplication::processEvents();
        for (const char *expected : {"first", "second", "third"}) {
            QCOMPARE(QApplication::topLevelWidgets().size(), 1);
            QCOMPARE(openBox()->text(), text(expected));
            openBox()->accept();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        QVERIFY(openBox() == nullptr);
    }
};

} // namespace quorvane

GUI_TEST(AlertsTest)
#include "AlertsTest.moc"
