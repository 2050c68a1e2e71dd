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
    std::unique_ptr<GuiFixture> fixture;
    std::unique_ptr<QMenu> menu;
    QrvMenuItem *item = nullptr;
    std::unique_ptr<QrvMenuItemViewController> controller;

    [[nodiscard]] QrvMenuItemView &row() const { return *controller->view(); }

    [[nodiscard]] QLabel *label(const char *name) const { return row().findChild<QLabel *>(text(name)); }

    /// One drawing of the row alone: its fill, seen at a corner without text or picture.
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
        fixture = std::make_unique<GuiFixture>();
        fixture->addImage(text("gold"), QSize(16, 16));
        menu = std::make_unique<QMenu>();
        menu->addAction(text("Another"));
        item = new QrvMenuItem(text("Germany Berlin"), menu.get());
        menu->addAction(item);
        controller = std::make_unique<QrvMenuItemViewController>(item);
        controller->setTitle(text("Germany Berlin"));
    }

    void cleanup() {
        controller.reset();
        menu.reset();
        fixture.reset();
    }

    void controllerBeginsWithoutPictures() {
        const QrvMenuItemViewController alone;
        QVERIFY(alone.view() != nullptr);
        QVERIFY(alone.menuItem() == nullptr);
        QVERIFY(alone.view()->menuItem() == nullptr);
        QVERIFY(alone.flagImage().isNull());
        QVERIFY(alone.view()->findChild<QLabel *>(text("imageGold"))->pixmap().isNull());
        QVERIFY(!alone.gold());
    }

    void controllerGivesTheRowItsItemAndLabel() {
        QCOMPARE(controller->menuItem(), item);
        QCOMPARE(row().menuItem(), item);
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
        controller->setTitle(title);
        QCOMPARE(controller->title(), title);
        const auto *shown = label("labelText");
        QCOMPARE(shown->size(), shown->sizeHint());
        QCOMPARE(row().width(), shown->x() + shown->width() + 5 + label("imageGold")->width());
        QCOMPARE(row().height(), height);
        QCOMPARE(row().pos(), QPoint(7, 9));
    }

    void goldShowsTheMark() {
        controller->setGold(true);
        QVERIFY(controller->gold());
        QVERIFY(!label("imageGold")->pixmap().isNull());
        controller->setGold(false);
        QVERIFY(!controller->gold());
        QVERIFY(label("imageGold")->pixmap().isNull());
    }

    void flagIsShownAndTakenAway() {
        QPixmap flag(28, 21);
        flag.fill(Qt::blue);
        controller->setFlagImage(flag);
        QCOMPARE(controller->flagImage().cacheKey(), flag.cacheKey());
        controller->setFlagImage({});
        QVERIFY(controller->flagImage().isNull());
    }

    void plainRowIsClearAndBlack() {
        QCOMPARE(fillOfOneDrawing().alpha(), 0);
        QCOMPARE(textColour(), QColor(Qt::black));
    }

    void highlightedRowHasTheDesktopsSelectionColours() {
        menu->setActiveAction(item);
        QCOMPARE(fillOfOneDrawing(), selected(QPalette::Highlight));
        QCOMPARE(textColour(), selected(QPalette::HighlightedText));
        menu->setActiveAction(menu->actions().first());
        QCOMPARE(fillOfOneDrawing().alpha(), 0);
        QCOMPARE(textColour(), QColor(Qt::black));
    }

    void rowThatTheMouseHasLeftIsDrawnUnhighlightedOnce() {
        menu->setActiveAction(item);
        QCOMPARE(fillOfOneDrawing(), selected(QPalette::Highlight));
        row().mouseExited();
        QCOMPARE(fillOfOneDrawing().alpha(), 0);
        QCOMPARE(textColour(), QColor(Qt::black));
        QCOMPARE(fillOfOneDrawing(), selected(QPalette::Highlight)); // the menu still says so
    }

    void enteringAndLeavingDrawsAnew() {
        row().show();
        QVERIFY(QTest::qWaitForWindowExposed(&row()));
        menu->setActiveAction(item);
        QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
        QCoreApplication::sendEvent(&row(), &enter);
        QTRY_COMPARE(textColour(), selected(QPalette::HighlightedText));
        menu->setActiveAction(menu->actions().first());
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&row(), &leave);
        QTRY_COMPARE(textColour(), QColor(Qt::black));
    }

    void clickClosesTheMenuAndChoosesTheItem() {
        QSignalSpy chosen(item, &QAction::triggered);
        menu->popup(QPoint(10, 10));
        QTRY_VERIFY(menu->isVisible());
        QTest::mouseClick(&row(), Qt::LeftButton, {}, QPoint(3, 3));
        QVERIFY(!menu->isVisible());
        QCOMPARE(chosen.size(), 1);
        // With the keyboard it is the same.
        menu->popup(QPoint(10, 10));
        menu->setActiveAction(item);
        QTest::keyClick(menu.get(), Qt::Key_Return);
        QVERIFY(!menu->isVisible());
        QCOMPARE(chosen.size(), 2);
    }

    void clickInASubmenuClosesThemAll() {
        QMenu outer;
        outer.addMenu(menu.get());
        menu->setTitle(text("Locations"));
        outer.popup(QPoint(10, 10));
        menu->popup(QPoint(60, 10));
        QTRY_VERIFY(menu->isVisible() && outer.isVisible());
        QSignalSpy chosen(item, &QAction::triggered);
        row().mouseDown();
        QVERIFY(!menu->isVisible());
        QVERIFY(!outer.isVisible());
        QCOMPARE(chosen.size(), 1);
    }

    void clickOnADisabledItemOrWithoutAMenuDoesNothing() {
        QSignalSpy chosen(item, &QAction::triggered);
        item->setEnabled(false);
        row().mouseDown();
        item->setEnabled(true);
        menu->removeAction(item);
        row().mouseDown();
        QCOMPARE(chosen.size(), 0);
    }

    void rowOutlivesItsItem() {
        menu.reset(); // takes the item along
        row().mouseDown();
        QCOMPARE(fillOfOneDrawing().alpha(), 0);
        QVERIFY(controller->menuItem() == nullptr);
    }

    void itemMarksItsRow() {
        auto owned = std::make_unique<QrvMenuItemViewController>(item);
        const QrvMenuItemViewController *view = owned.get();
        item->setItemView(std::move(owned));
        QVERIFY(!item->full());
        item->setFull(true);
        QVERIFY(view->gold());
        QVERIFY(item->full());
    }
};

} // namespace quorvane

QTEST_MAIN(quorvane::MenuItemViewTest)
#include "MenuItemViewTest.moc"
