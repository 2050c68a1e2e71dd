#include "frontend/ui/locations/QrvMenuItem.h"
#include "frontend/ui/locations/QrvMenuItemView.h"

#include "tests/gui/GuiTest.h"

#include <QLabel>
#include <QMenu>
#include <QSignalSpy>

namespace quorvane {

/// The row of a location in a menu.
class MenuItemViewTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;
    std::unique_ptr<QMenu> m_menu;
    QrvMenuItem *m_item = nullptr;
    std::unique_ptr<QrvMenuItemViewController> m_controller;

    [[nodiscard]] QrvMenuItemView &row() const { return *m_controller->view(); }

    [[nodiscard]] QLabel *label(const char *name) const { return row().findChild<QLabel *>(text(name)); }

    /// Draws only the row once; the colour of a corner without text or picture.
    [[nodiscard]] QColor fillOfOneDrawing() const {
        QImage image(row().size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        row().render(&image, {}, {}, QWidget::RenderFlags());
        return image.pixelColor(1, 1);
    }

    [[nodiscard]] QColor textColour() const {
        return label("labelText")->palette().color(QPalette::WindowText);
    }

    [[nodiscard]] QColor selected(QPalette::ColorRole role) const { return row().palette().color(role); }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<GuiFixture>();
        m_fixture->addImage(text("gold"), QSize(16, 16));
        m_menu = std::make_unique<QMenu>();
        m_menu->addAction(text("Another"));
        m_item = new QrvMenuItem(text("Germany Berlin"), m_menu.get());
        m_menu->addAction(m_item);
        m_controller = std::make_unique<QrvMenuItemViewController>(m_item);
        m_controller->setTitle(text("Germany Berlin"));
    }

    void cleanup() {
        m_controller.reset();
        m_menu.reset();
        m_fixture.reset();
    }

    void controllerStartsWithoutPictures() {
        const QrvMenuItemViewController alone;
        QVERIFY(alone.view() != nullptr);
        QVERIFY(alone.menuItem() == nullptr);
        QVERIFY(alone.view()->menuItem() == nullptr);
        QVERIFY(alone.flagImage().isNull());
        QVERIFY(alone.view()->findChild<QLabel *>(text("imageGold"))->pixmap().isNull());
        QVERIFY(!alone.gold());
    }

    void controllerSetsTheRowsItemAndLabel() {
        QCOMPARE(m_controller->menuItem(), m_item);
        QCOMPARE(row().menuItem(), m_item);
        QCOMPARE(row().labelText(), label("labelText"));
    }

    void titleSetsTheWidthAlone_data() {
        QTest::addColumn<QString>("title");
        QTest::newRow("empty") << text("");
        QTest::newRow("short") << text("x");
        QTest::newRow("long") << text("Bosnia and Herzegovina Sarajevo");
    }

    void titleSetsTheWidthAlone() {
        QFETCH(QString, title);
        row().move(7, 9);
        const int height = row().height();
        m_controller->setTitle(title);
        QCOMPARE(m_controller->title(), title);
        const auto *shown = label("labelText");
        QCOMPARE(shown->size(), shown->sizeHint());
        QCOMPARE(row().width(), shown->x() + shown->width() + 5 + label("imageGold")->width());
        QCOMPARE(row().height(), height);
        QCOMPARE(row().pos(), QPoint(7, 9));
    }

    void goldShowsTheMark() {
        m_controller->setGold(true);
        QVERIFY(m_controller->gold());
        QVERIFY(!label("imageGold")->pixmap().isNull());
        m_controller->setGold(false);
        QVERIFY(!m_controller->gold());
        QVERIFY(label("imageGold")->pixmap().isNull());
    }

    void flagIsShownAndRemoved() {
        QPixmap flag(28, 21);
        flag.fill(Qt::blue);
        m_controller->setFlagImage(flag);
        QCOMPARE(m_controller->flagImage().cacheKey(), flag.cacheKey());
        m_controller->setFlagImage({});
        QVERIFY(m_controller->flagImage().isNull());
    }

    void plainRowIsClearAndBlack() {
        QCOMPARE(fillOfOneDrawing().alpha(), 0);
        QCOMPARE(textColour(), QColor(Qt::black));
    }

    void highlightedRowHasTheDesktopsSelectionColours() {
        m_menu->setActiveAction(m_item);
        QCOMPARE(fillOfOneDrawing(), selected(QPalette::Highlight));
        QCOMPARE(textColour(), selected(QPalette::HighlightedText));
        m_menu->setActiveAction(m_menu->actions().first());
        QCOMPARE(fillOfOneDrawing().alpha(), 0);
        QCOMPARE(textColour(), QColor(Qt::black));
    }

    void rowThatTheMouseHasLeftIsDrawnUnhighlightedOnce() {
        m_menu->setActiveAction(m_item);
        QCOMPARE(fillOfOneDrawing(), selected(QPalette::Highlight));
        row().mouseExited();
        QCOMPARE(fillOfOneDrawing().alpha(), 0);
        QCOMPARE(textColour(), QColor(Qt::black));
        QCOMPARE(fillOfOneDrawing(),
                 selected(QPalette::Highlight)); // the item is still the menu's active one
    }

    void enteringAndLeavingRedraws() {
        row().show();
        QVERIFY(QTest::qWaitForWindowExposed(&row()));
        m_menu->setActiveAction(m_item);
        QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
        QCoreApplication::sendEvent(&row(), &enter);
        QTRY_COMPARE(textColour(), selected(QPalette::HighlightedText));
        m_menu->setActiveAction(m_menu->actions().first());
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&row(), &leave);
        QTRY_COMPARE(textColour(), QColor(Qt::black));
    }

    void clickClosesTheMenuAndChoosesTheItem() {
        QSignalSpy chosen(m_item, &QAction::triggered);
        m_menu->popup(QPoint(10, 10));
        QTRY_VERIFY(m_menu->isVisible());
        QTest::mouseClick(&row(), Qt::LeftButton, {}, QPoint(3, 3));
        QVERIFY(!m_menu->isVisible());
        QCOMPARE(chosen.size(), 1);
        // The keyboard has the same effect.
        m_menu->popup(QPoint(10, 10));
        m_menu->setActiveAction(m_item);
        QTest::keyClick(m_menu.get(), Qt::Key_Return);
        QVERIFY(!m_menu->isVisible());
        QCOMPARE(chosen.size(), 2);
    }

    void clickInASubmenuClosesAllMenus() {
        QMenu outer;
        outer.addMenu(m_menu.get());
        m_menu->setTitle(text("Locations"));
        outer.popup(QPoint(10, 10));
        m_menu->popup(QPoint(60, 10));
        QTRY_VERIFY(m_menu->isVisible() && outer.isVisible());
        QSignalSpy chosen(m_item, &QAction::triggered);
        row().mouseDown();
        QVERIFY(!m_menu->isVisible());
        QVERIFY(!outer.isVisible());
        QCOMPARE(chosen.size(), 1);
    }

    void clickOnADisabledItemOrWithoutAMenuDoesNothing() {
        QSignalSpy chosen(m_item, &QAction::triggered);
        m_item->setEnabled(false);
        row().mouseDown();
        m_item->setEnabled(true);
        m_menu->removeAction(m_item);
        row().mouseDown();
        QCOMPARE(chosen.size(), 0);
    }

    void rowOutlivesItsItem() {
        m_menu.reset(); // destroys the item too
        row().mouseDown();
        QCOMPARE(fillOfOneDrawing().alpha(), 0);
        QVERIFY(m_controller->menuItem() == nullptr);
    }

    void itemMarksItsRow() {
        auto owned = std::make_unique<QrvMenuItemViewController>(m_item);
        const QrvMenuItemViewController *view = owned.get();
        m_item->setItemView(std::move(owned));
        QVERIFY(!m_item->full());
        m_item->setFull(true);
        QVERIFY(view->gold());
        QVERIFY(m_item->full());
    }
};

} // namespace quorvane

GUI_TEST(MenuItemViewTest)
#include "MenuItemViewTest.moc"
