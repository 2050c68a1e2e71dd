#include "frontend/ui/locations/QrvMenuItem.h"

#include "tests/gui/GuiTest.h"

namespace quorvane {

class MenuItemTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;

private Q_SLOTS:

    void init() { m_fixture = std::make_unique<GuiFixture>(); }

    void cleanup() { m_fixture.reset(); }

    void carriesItsGroup() {
        QrvMenuItem item(text("Germany Berlin"));
        QVERIFY(item.vpnData() == nullptr);
        const auto data = std::make_shared<QrvVpnData>();
        item.setVpnData(data);
        QCOMPARE(item.vpnData(), data);
        QCOMPARE(item.text(), text("Germany Berlin"));
    }

    void fullIsFalseWithoutAnItemViewWhateverWasSet() {
        QrvMenuItem item(text("x"));
        item.setFull(true);
        QVERIFY(!item.full());
        item.setItemView(std::make_unique<QrvMenuItemViewController>());
        QVERIFY(!item.full());
    }

    void fullIsPassedOnToTheItemViewAsGold() {
        QrvMenuItem item(text("x"));
        item.setItemView(std::make_unique<QrvMenuItemViewController>());
        item.setFull(true);
        QVERIFY(item.full());
        QVERIFY(item.itemView()->gold());
        item.setFull(false);
        QVERIFY(!item.full());
    }

    void numbersAreNeverUsedTwice() {
        QSet<quint64> numbers;
        for (int i = 0; i < 100; ++i) {
            numbers.insert(QrvMenuItem(text("x")).id());
        }
        QCOMPARE(numbers.size(), 100);
    }
};

} // namespace quorvane

GUI_TEST(MenuItemTest)
#include "MenuItemTest.moc"
