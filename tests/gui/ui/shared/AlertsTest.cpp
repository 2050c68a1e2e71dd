#include "frontend/ui/shared/Alerts.h"
#include "frontend/support/ModalTurn.h"
#include "frontend/ui/shared/WindowOrder.h"
#include "tests/gui/GuiTest.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

#include <optional>

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

    void questionHasItsButtonsAndCanBeClosed() {
        const Question question{text("Title"), text("Text"), text("More"), text("Yes"), text("Rather")};
        const auto answerTo = [&question](auto press) {
            std::optional<Answer> answer;
            Alerts::shared().ask(question, [&answer](Answer given) { answer = given; });
            QMessageBox *box = openBox();
            press(*box);
            return answer;
        };
        const auto pressing = [](const char *name) {
            return [name](const QMessageBox &box) {
                for (QAbstractButton *button : box.buttons()) {
                    if (button->text() == text(name)) {
                        QTest::mouseClick(button, Qt::LeftButton);
                        return;
                    }
                }
                QFAIL(name);
            };
        };
        QCOMPARE(answerTo(pressing("Yes")), Answer::First);
        QCOMPARE(answerTo(pressing("Rather")), Answer::Second);
        QCOMPARE(answerTo(pressing("Close")), Answer::None);
        QCOMPARE(answerTo([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); }), Answer::None);
        QCOMPARE(answerTo([](QMessageBox &box) {
                     QCOMPARE(box.text(), text("Text"));
                     QCOMPARE(box.informativeText(), text("More"));
                     QCOMPARE(box.buttons().size(), 3);
                     box.close();
                 }),
                 Answer::None);
        QVERIFY(openBox() == nullptr);
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

    void belongsToTheWindowInFrontAndFloatsWithIt() {
        QWidget main;
        main.show();
        QDialog about;
        about.setWindowFlag(Qt::WindowStaysOnTopHint, true);
        about.show();
        Alerts::shared().critical({text("t"), text("x"), {}});
        QMessageBox *box = openBox();
        QCOMPARE(box->windowModality(), Qt::ApplicationModal);
        QCOMPARE(box->windowHandle()->transientParent(), about.windowHandle());
        QVERIFY(box->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        QTRY_VERIFY(box->isActiveWindow());
        box->accept();

        about.hide();
        Alerts::shared().critical({text("t"), text("x"), {}});
        box = openBox();
        QCOMPARE(box->windowHandle()->transientParent(), main.windowHandle());
        QVERIFY(!box->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        box->accept();

        main.hide();
        Alerts::shared().critical({text("t"), text("x"), {}});
        QTRY_VERIFY(openBox()->isActiveWindow());
        QVERIFY(openBox()->windowHandle()->transientParent() == nullptr);
        openBox()->accept();
    }

    void belongsToTheDialogThatIsOpen() {
        QWidget main;
        main.show();
        QDialog dialog(&main);
        dialog.setModal(true);
        dialog.show();
        Alerts::shared().critical({text("t"), text("x"), {}, true});
        QCOMPARE(openBox()->windowHandle()->transientParent(), dialog.windowHandle());
        openBox()->accept();
    }

    void windowThatOpensLaterStaysBelow() {
        QWidget main;
        main.show();
        Alerts::shared().critical({text("t"), text("x"), {}});
        QMessageBox *box = openBox();
        QWidget about;
        about.setWindowFlag(Qt::WindowStaysOnTopHint, true);
        bringForward(about);
        QVERIFY(about.isVisible());
        QTRY_VERIFY(box->isActiveWindow());
        QCOMPARE(box->windowHandle()->transientParent(), about.windowHandle());
        QVERIFY(box->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        box->accept();
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
