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

    void cleanup() { Alerts::shared().setPresenter({}); }

    void showsTitleTextInformativeAndOneButton() {
        bool looked = false;
        QTimer::singleShot(0, this, [&looked] {
            QMessageBox *box = openBox();
            QVERIFY(box != nullptr);
            QCOMPARE(box->windowTitle(), text("Title"));
            QCOMPARE(box->text(), text("<b>Text</b>\n")); // to the last character
            QCOMPARE(box->informativeText(), text("More"));
            QCOMPARE(box->icon(), QMessageBox::Critical);
            QCOMPARE(box->buttons().size(), 1);
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
            looked = true;
        });
        Alerts::shared().critical({text("Title"), text("<b>Text</b>\n"), text("More")});
        QVERIFY(looked);
    }

    void returnAndEscapeDismiss() {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            QTimer::singleShot(0, this, [key] { QTest::keyClick(openBox(), key); });
            Alerts::shared().critical({text("t"), text("x"), {}});
            QVERIFY(openBox() == nullptr);
        }
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
        int depth = 0;
        int deepest = 0;
        QStringList shown;
        Alerts::shared().setPresenter([&](const Alert &alert) {
            deepest = std::max(deepest, ++depth);
            shown.append(alert.text);
            if (alert.text == text("outer")) {
                Alerts::shared().critical({text("t"), text("inner"), {}});
                Alerts::shared().criticalLater({text("t"), text("later"), {}});
                QCoreApplication::processEvents(); // as a modal loop does
            }
            --depth;
        });
        Alerts::shared().critical({text("t"), text("outer"), {}});
        QCOMPARE(deepest, 1);
        QCOMPARE(shown, (QStringList{text("outer"), text("inner"), text("later")}));
    }
};

} // namespace quorvane

GUI_TEST(AlertsTest)
#include "AlertsTest.moc"
