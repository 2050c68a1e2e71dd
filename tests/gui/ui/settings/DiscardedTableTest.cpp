#include "frontend/ui/settings/QrvDiscardIpTableViewController.h"

#include "tests/gui/GuiTest.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>

namespace quorvane {

class DiscardedTableTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> fixture;
    std::unique_ptr<QrvTableDataSource> source;
    std::unique_ptr<QrvDiscardIpTableViewController> table;

    [[nodiscard]] QVariant stored() const {
        return fixture->services.preferences().value(text("discardedIPs"));
    }

private Q_SLOTS:

    void init() {
        fixture = std::make_unique<GuiFixture>();
        source = std::make_unique<QrvTableDataSource>();
        source->awakeFromNib();
        table = std::make_unique<QrvDiscardIpTableViewController>();
        table->setDataSource(source.get());
    }

    void cleanup() {
        table.reset();
        source.reset();
        fixture.reset();
    }

    void nothingStoredIsNoRow() {
        QCOMPARE(table->getRowData(), QStringList());
        QVERIFY(!stored().isValid());
    }

    void storedEmptyTextIsOneEmptyRow() {
        fixture->services.preferences().setValue(text("discardedIPs"), text(""));
        source->awakeFromNib();
        QCOMPARE(table->getRowData(), QStringList{text("")});
    }

    void rowsAreStoredJoinedAndSavedAfterEveryChange() {
        for (const char *row : {"a", "b", "c"}) {
            table->addRow(text(row));
        }
        QCOMPARE(stored(), QVariant(text("a|b|c")));
        QCOMPARE(fixture->services.preferences().synchronizations(), 3);
        table->selectRow(1);
        table->deleteSelectedRow();
        QCOMPARE(stored(), QVariant(text("a|c")));
        QCOMPARE(fixture->services.preferences().synchronizations(), 4);
        table->clearAll();
        QCOMPARE(stored(), QVariant(text("")));
        QCOMPARE(fixture->services.preferences().synchronizations(), 5);
        QVERIFY(!stored().toString().isNull());
    }

    void duplicatesAndMissingValuesChangeNothing() {
        table->addRow(text("a"));
        const int saves = fixture->services.preferences().synchronizations();
        table->addRow(text("a"));
        table->addRow(QString());
        QCOMPARE(table->getRowData(), QStringList{text("a")});
        QCOMPARE(fixture->services.preferences().synchronizations(), saves);
        QVERIFY(table->hasRow(text("a")));
        QVERIFY(!table->hasRow(text("A")));
    }

    void emptyTextIsARowLikeAnother() {
        table->addRow(text(""));
        QCOMPARE(table->getRowData(), QStringList{text("")});
        table->addRow(text("a"));
        QCOMPARE(stored(), QVariant(text("|a")));
    }

    void clearingAnEmptyListStoresIt() {
        table->clearAll();
        QCOMPARE(stored(), QVariant(text("")));
    }

    void deletingWithoutASelectionOrOutsideTheListChangesNothing() {
        table->addRow(text("a"));
        table->clearSelection();
        table->deleteSelectedRow();
        source->deleteRow(-1);
        source->deleteRow(1);
        QCOMPARE(table->getRowData(), QStringList{text("a")});
        QCOMPARE(stored(), QVariant(text("a")));
        QCOMPARE(fixture->services.preferences().synchronizations(), 1);
    }

    void storedRowsComeBackInOrder() {
        fixture->services.preferences().setValue(text("discardedIPs"), text("1.1.1.1|2.2.2.2||3.3.3.3"));
        source->awakeFromNib();
        QCOMPARE(table->getRowData(),
                 (QStringList{text("1.1.1.1"), text("2.2.2.2"), text(""), text("3.3.3.3")}));
    }

    void tableShowsTheRowsAndNothingBeyond() {
        table->addRow(text("a"));
        QCOMPARE(source->rowCount(), 1);
        QCOMPARE(source->data(source->index(0, 0)).toString(), text("a"));
        QVERIFY(!source->data(source->index(5, 0)).isValid());
        QVERIFY(source->flags(source->index(0, 0)).testFlag(Qt::ItemIsSelectable));
    }

    void keysCopyAndAskForDeletion() {
        QSignalSpy asked(table.get(), &QrvDiscardIpTableViewController::deletePressed);
        table->addRow(text("1.1.1.1"));
        table->addRow(text("2.2.2.2"));
        table->show();
        table->selectRow(1);
        QTest::keyClick(table.get(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), text("2.2.2.2"));
        QTest::keyClick(table.get(), Qt::Key_Delete);
        QCOMPARE(asked.size(), 1);
        table->deleteSelectedRow();
        QCOMPARE(table->getRowData(), QStringList{text("1.1.1.1")});
        QCOMPARE(table->currentIndex().row(), 0); // the next Delete needs no new selection
        table->deleteSelectedRow();
        QCOMPARE(table->getRowData(), QStringList());
    }

    void anotherKeyIsAnotherList() {
        QrvTableDataSource sites(text("cookieSites"));
        sites.awakeFromNib();
        sites.addRow(text("example.test"));
        QVERIFY(!stored().isValid());
        QCOMPARE(fixture->services.preferences().string(text("cookieSites")), text("example.test"));
    }
};

} // namespace quorvane

QTEST_MAIN(quorvane::DiscardedTableTest)
#include "DiscardedTableTest.moc"
