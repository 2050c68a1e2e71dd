#include "frontend/ui/shared/PopUpButton.h"

#include "tests/gui/GuiTest.h"

#include <QAbstractItemView>
#include <QSignalSpy>
#include <QWheelEvent>

namespace quorvane {

/// The pop-up button in a shown window: what a closed one does with keys and the wheel.
class PopUpButtonTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QWidget> m_window;
    PopUpButton *m_button = nullptr;

private Q_SLOTS:

    void init() {
        m_window = std::make_unique<QWidget>();
        m_button = new PopUpButton(m_window.get());
        m_button->addItems({text("Austria"), text("Belgium"), text("Chile"), text("Denmark")});
        m_button->setCurrentIndex(1);
        m_window->show();
        m_button->setFocus();
    }

    void cleanup() { m_window.reset(); }

    void keysOpenTheListAndChooseNothing_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("opens");
        QTest::newRow("Up") << int(Qt::Key_Up) << 0 << true;
        QTest::newRow("Down") << int(Qt::Key_Down) << 0 << true;
        QTest::newRow("Down of the key pad") << int(Qt::Key_Down) << int(Qt::KeypadModifier) << true;
        QTest::newRow("Shift and Down") << int(Qt::Key_Down) << int(Qt::ShiftModifier) << true;
        QTest::newRow("Alt and Down") << int(Qt::Key_Down) << int(Qt::AltModifier) << true;
        QTest::newRow("Control and Down") << int(Qt::Key_Down) << int(Qt::ControlModifier) << false;
        QTest::newRow("Home") << int(Qt::Key_Home) << 0 << true;
        QTest::newRow("Control and Home") << int(Qt::Key_Home) << int(Qt::ControlModifier) << false;
        QTest::newRow("End") << int(Qt::Key_End) << 0 << true;
        QTest::newRow("Page Up") << int(Qt::Key_PageUp) << 0 << true;
        QTest::newRow("Page Down") << int(Qt::Key_PageDown) << 0 << true;
        QTest::newRow("a letter") << int(Qt::Key_D) << 0 << true;
        QTest::newRow("Control and a letter") << int(Qt::Key_D) << int(Qt::ControlModifier) << false;
        QTest::newRow("blank") << int(Qt::Key_Space) << 0 << true;
        QTest::newRow("F4") << int(Qt::Key_F4) << 0 << true;
        QTest::newRow("Return") << int(Qt::Key_Return) << 0 << false;
        QTest::newRow("Escape") << int(Qt::Key_Escape) << 0 << false;
    }

    void keysOpenTheListAndChooseNothing() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(bool, opens);
        QSignalSpy chosen(m_button, &QComboBox::activated);
        QTest::keyClick(m_button, static_cast<Qt::Key>(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(m_button->view()->isVisible(), opens);
        QCOMPARE(m_button->currentIndex(), 1);
        QCOMPARE(chosen.size(), 0);
        m_button->hidePopup();
        QCOMPARE(m_button->currentIndex(), 1);
        QCOMPARE(chosen.size(), 0);
    }

    void wheelIsLeftToTheWindow() {
        QWheelEvent wheel(QPointF(5, 5), m_button->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        wheel.accept();
        m_button->event(&wheel);
        QVERIFY(!wheel.isAccepted());
        QCOMPARE(m_button->currentIndex(), 1);
    }

    void arrowsAndReturnInTheOpenListChoose() {
        QSignalSpy chosen(m_button, &QComboBox::activated);
        QTest::keyClick(m_button, Qt::Key_Down);
        QTest::keyClick(m_button->view(), Qt::Key_Down);
        QCOMPARE(chosen.size(), 0);
        QTest::keyClick(m_button->view(), Qt::Key_Return);
        QCOMPARE(m_button->currentText(), text("Chile"));
        QCOMPARE(chosen.size(), 1);
    }

    void letterSearchesTheOpenList() {
        QSignalSpy chosen(m_button, &QComboBox::activated);
        QTest::keyClicks(m_button, text("d"));
        QCOMPARE(m_button->view()->currentIndex().row(), 3);
        QCOMPARE(m_button->currentIndex(), 1);
        QTest::keyClick(m_button->view(), Qt::Key_Return);
        QCOMPARE(m_button->currentText(), text("Denmark"));
        QCOMPARE(chosen.size(), 1);
    }

    void escapeInTheOpenListChoosesNothing() {
        QSignalSpy chosen(m_button, &QComboBox::activated);
        QTest::keyClick(m_button, Qt::Key_End);
        QTest::keyClick(m_button->view(), Qt::Key_Down);
        QTest::keyClick(m_button->view(), Qt::Key_Escape);
        QVERIFY(!m_button->view()->isVisible());
        QCOMPARE(m_button->currentIndex(), 1);
        QCOMPARE(chosen.size(), 0);
    }
};

} // namespace quorvane

GUI_TEST(PopUpButtonTest)
#include "PopUpButtonTest.moc"
